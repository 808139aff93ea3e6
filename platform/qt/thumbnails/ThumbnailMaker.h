#pragma once

#include "platform/qt/thumbnails/ThumbnailOriginal.h"
#include "platform/qt/thumbnails/ThumbnailSize.h"

#include <QImage>

#include <stop_token>

namespace tessel::qt {

/// What came of making a thumbnail.
struct MadeThumbnail {
    enum class Outcome {
        Made,
        NotMade, ///< documents of this type have none, or there was no reading it this time
        Failed,  ///< this document has none: it is damaged, encrypted or too large
    };

    Outcome outcome = Outcome::NotMade;
    QImage image; ///< no side is longer than was asked for; null unless it was made
};

/// Makes the thumbnail of a text, or has the document decoder make that of anything else, and waits for it. Any thread.
/// @param stop ends the waiting
[[nodiscard]] MadeThumbnail makeThumbnail(const ThumbnailOriginal&, ThumbnailSize, const std::stop_token& stop);

} // namespace tessel::qt
