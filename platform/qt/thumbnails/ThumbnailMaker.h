#pragma once

#include "platform/qt/thumbnails/ThumbnailSize.h"

#include <QIODevice>
#include <QImage>
#include <QString>

namespace tessel::qt {

/// What came of making a thumbnail.
struct MadeThumbnail {
    enum class Outcome {
        Made,
        NotSupported, ///< documents of this type have none
        Failed,       ///< this document has none: it is damaged, encrypted or too large
    };

    Outcome outcome = Outcome::NotSupported;
    QImage image; ///< no side is longer than was asked for; null unless it was made
    QString mimeType;
};

/// Makes the thumbnail of an image, a vector drawing, a PDF document or a text. It decides by what the content is,
/// then by the name. Nothing but the document is read. Safe to call on any thread; it may take seconds, and as much
/// memory as the limits in it allow.
/// @param document open for reading, at its start, and seekable
/// @param name its file name
[[nodiscard]] MadeThumbnail makeThumbnail(QIODevice& document, const QString& name, ThumbnailSize);

} // namespace tessel::qt
