#pragma once

#include "platform/ui/Font.h"

#include <QFont>

namespace tessel::qt {

/// The system's font in this size, a point being a pixel of the scene: what is measured with and what QML draws with.
[[nodiscard]] QFont systemFont(const Font&);

} // namespace tessel::qt
