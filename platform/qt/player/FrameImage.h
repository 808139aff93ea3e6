#pragma once

#include <QImage>
#include <QVideoFrame>

namespace tessel::qt {

/// A frame's picture; null when its pixels are of a kind that nothing here knows.
[[nodiscard]] QImage imageOf(QVideoFrame);

} // namespace tessel::qt
