#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QImage>

namespace tessel::qt {

/// Small pictures of documents; no side of one is longer than `side` pixels. A null image says that there is none:
/// the document is damaged, encrypted, or larger than the limits that keep the work within seconds and some hundred
/// megabytes.

/// @param format as QImageReader names it
[[nodiscard]] QImage pictureOfImage(QIODevice&, const QByteArray& format, int side);

/// A vector drawing in SVG. What it refers to outside of itself is left out.
[[nodiscard]] QImage pictureOfDrawing(QIODevice&, int side);

/// The first page.
[[nodiscard]] QImage pictureOfPDF(QIODevice&, int side);

/// The first lines on a page of paper; none of what holds zero characters, which no text does.
/// @param head the first kilobytes, in any encoding
/// @param isCode sets them in a face of one width, and cuts long lines instead of wrapping them
[[nodiscard]] QImage pictureOfText(const QByteArray& head, bool isCode, int side);

} // namespace tessel::qt
