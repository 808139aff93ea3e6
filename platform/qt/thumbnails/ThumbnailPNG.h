#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>

#include <optional>
#include <utility>

namespace tessel::qt {

/// Keywords and Latin-1 values.
using PNGTexts = QList<std::pair<QByteArray, QByteArray>>;

/// A PNG file that holds a picture and these texts, and nothing else that the image carries. The texts are written
/// as uncompressed "tEXt" chunks, the only ones that the desktop's simpler readers look at.
/// @returns nothing when the image cannot be written
[[nodiscard]] QByteArray thumbnailPNG(const QImage&, const PNGTexts&);

struct ThumbnailPNG {
    QImage image;
    PNGTexts texts; ///< of any kind, wherever they are in the file
};

/// Reads such a file, or one of another program. Qt's own reader would load every image format that is installed
/// before it came to this one.
/// @param longest pixels that a side may have
/// @returns none when it is damaged or larger
[[nodiscard]] std::optional<ThumbnailPNG> readThumbnailPNG(const QByteArray& file, int longest);

} // namespace tessel::qt
