#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>

#include <utility>

namespace tessel::qt {

/// A PNG file that holds a picture and these texts, and nothing else that the image carries. The texts are written
/// as uncompressed "tEXt" chunks, the only ones that the desktop's simpler readers look at.
/// @param texts keywords and Latin-1 values
/// @returns nothing when the image cannot be written
[[nodiscard]] QByteArray thumbnailPNG(const QImage&, const QList<std::pair<QByteArray, QByteArray>>& texts);

} // namespace tessel::qt
