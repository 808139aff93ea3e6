#include "platform/qt/thumbnails/ThumbnailMaker.h"

#include "platform/base/Platform.h"
#include "platform/documents/DocumentDecoder.h"
#include "platform/files/TypeRegistry.h"
#include "platform/qt/thumbnails/TextPicture.h"

#include <condition_variable>
#include <mutex>
#include <optional>

namespace tessel::qt {

namespace {

constexpr qint64 kHeadBytes = 8 * 1024;

using Outcome = MadeThumbnail::Outcome;

// Waits on one thread for what the decoder answers on another.
class Waiting {
public:
    void answer(const std::optional<ContentPicture>& picture, std::optional<ContentProblem> problem)
    {
        const std::lock_guard lock(mutex_);
        made_ = picture ? MadeThumbnail{Outcome::Made, imageOf(*picture)} : MadeThumbnail{outcomeOf(*problem), {}};
        answered_.notify_one();
    }

    /// @returns none when it was stopped before
    [[nodiscard]] std::optional<MadeThumbnail> wait(const std::stop_token& stop)
    {
        std::unique_lock lock(mutex_);
        answered_.wait(lock, stop, [this] { return made_.has_value(); });
        return made_;
    }

private:
    // Shares the pixels.
    static QImage imageOf(const ContentPicture& picture)
    {
        using Pixels = std::shared_ptr<const std::byte>;
        return {reinterpret_cast<const uchar*>(picture.pixels.get()),
                picture.width,
                picture.height,
                picture.stride,
                picture.isOpaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied,
                [](void* pixels) { delete static_cast<Pixels*>(pixels); },
                new Pixels(picture.pixels)};
    }

    static Outcome outcomeOf(ContentProblem problem)
    {
        return problem == ContentProblem::NotReadable || problem == ContentProblem::Gone ? Outcome::NotMade
                                                                                         : Outcome::Failed;
    }

    std::mutex mutex_;
    std::condition_variable_any answered_;
    std::optional<MadeThumbnail> made_;
};

// Null when it is no text after all.
QImage textPicture(const ThumbnailOriginal& original, const std::string& type, ThumbnailSize size)
{
    const auto file = original.open();
    const auto head = file ? file->read(kHeadBytes) : QByteArray();
    const bool isCode = type != "public.plain-text" && type != "public.markdown";
    return head.isEmpty() || head.startsWith("%PDF-") ? QImage() : pictureOfText(head, isCode, side(size));
}

} // namespace

MadeThumbnail makeThumbnail(const ThumbnailOriginal& original, ThumbnailSize size, const std::stop_token& stop)
{
    const auto& services = platform::installed();
    const auto url = URL::file(original.path.toStdString());
    const auto type = services.types.identifierForFileName(url.lastPathComponent());
    if (services.types.conforms(type, "public.text") && !services.types.conforms(type, "public.image"))
        if (const auto image = textPicture(original, type, size); !image.isNull())
            return {Outcome::Made, image};
    const auto waiting = std::make_shared<Waiting>();
    const auto ticket =
        services.decoder.paint({.url = url, .width = side(size), .height = side(size), .part = {}},
                               [waiting](const auto& picture, auto problem) { waiting->answer(picture, problem); });
    if (const auto made = waiting->wait(stop))
        return *made;
    services.decoder.cancel(ticket);
    return {};
}

} // namespace tessel::qt
