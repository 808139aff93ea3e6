#pragma once

#include "platform/base/URL.h"
#include "platform/ui/Geometry.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace tessel {

class MediaPlayer;

/// How a document can be shown.
enum class ContentKind {
    None, ///< not at all: nothing here reads it
    Text,
    Image,
    Pages,
    Audio,
    Video,
};

/// Why a document that somebody could read is not shown.
enum class ContentProblem {
    Empty,
    Damaged,
    Encrypted,
    TooLarge, ///< beyond the limits of memory or pixels
    TooSlow,  ///< not done within the limit of time
    Gone,
    NotReadable, ///< the user may not, or the device cannot
    NotPlayable, ///< what plays it has ended, or does not answer
};

/// What is known of a document's content before any of it is shown.
struct ContentFacts {
    ContentKind kind = ContentKind::None;
    std::optional<ContentProblem> problem;
    Size size;          ///< of an image in pixels, as it is held upright; of the first page in points
    int count = 0;      ///< of frames, or pages; 0 for other kinds
    double seconds = 0; ///< that sound or moving pictures last; 0 when unknown

    friend bool operator==(const ContentFacts&, const ContentFacts&) = default;
};

/// A picture in memory: 32 bits a pixel, premultiplied, alpha in the highest byte in native order.
struct ContentPicture {
    std::shared_ptr<const std::byte> pixels;
    int width = 0;
    int height = 0;
    std::ptrdiff_t stride = 0; ///< bytes from one row to the next
    int milliseconds = 0;      ///< how long this frame is shown; 0 for what does not move
    bool isOpaque = false;     ///< no pixel lets anything shine through
};

/// Reads and plays documents that may be damaged or hostile: in another process, with limits of time, memory and
/// pixels. What becomes of that process never hurts this one. Only documents whose content is on the device.
class DocumentDecoder {
public:
    using Ticket = std::uint64_t;
    using FactsHandler = std::function<void(const ContentFacts&)>;
    /// Exactly one of the two is there.
    using PictureHandler = std::function<void(const std::optional<ContentPicture>&, std::optional<ContentProblem>)>;

    /// Which picture, and how large.
    struct PictureWish {
        URL url;
        int index = 0;            ///< of the frame or page
        int width = 0;            ///< the whole picture fits into these, in pixels, and is never enlarged but for
        int height = 0;           ///< pages and drawings
        std::optional<Rect> part; ///< in fractions of the whole, 0 to 1; only this is painted
    };

    virtual ~DocumentDecoder() = default;

    /// Finds out what a document is. Any thread; the handler is called once on the main queue, unless cancelled.
    virtual Ticket inspect(const URL&, FactsHandler) = 0;
    /// Paints. Any thread; the newest wish first. The handler is called once on a thread of the decoder, unless
    /// cancelled.
    virtual Ticket paint(const PictureWish&, PictureHandler) = 0;
    /// The handler is called no more, unless it is being called already. Work that nobody waits for ends.
    virtual void cancel(Ticket) = 0;
    /// Opens sound or a film, to be played. Main thread only. @returns null where nothing plays it
    [[nodiscard]] virtual std::shared_ptr<MediaPlayer> openPlayer(const URL&) { return nullptr; }
};

} // namespace tessel
