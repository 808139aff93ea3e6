#pragma once

#include <QByteArray>
#include <QImage>

namespace tessel::qt {

/// The first lines of a text on a page of paper, no side of which is longer than `side` pixels. A null image for what
/// holds zero characters, which no text does.
/// @param head the first kilobytes, in any encoding
/// @param isCode sets them in a face of one width, and cuts long lines instead of wrapping them
[[nodiscard]] QImage pictureOfText(const QByteArray& head, bool isCode, int side);

} // namespace tessel::qt
