#pragma once

#include <QImage>
#include <QSize>
#include <QString>

namespace tessel::qt {

/// The size in pixels that an image provider is to answer with: a missing or negative side takes the other one's
/// length, `otherwise` when both are missing; no side is longer than 1024.
[[nodiscard]] QSize pixelSize(QSize requested, int otherwise);

/// Draws one of the program's own SVG files into the middle of a transparent image.
/// @param path a resource, such as ":/tessel/icons/folder.svg"
/// @returns a null image when there is no such file
[[nodiscard]] QImage svgPicture(const QString& path, QSize pixels);

} // namespace tessel::qt
