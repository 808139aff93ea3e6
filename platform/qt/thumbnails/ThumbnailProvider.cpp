#include "platform/qt/thumbnails/ThumbnailProvider.h"

#include "platform/qt/images/SvgPicture.h"

#include <QMetaObject>
#include <QQuickImageResponse>

#include <optional>

namespace tessel::qt {

namespace {

constexpr int kUsualSide = 128;          // pixels
constexpr int kKeptKilobytes = 8 * 1024; // a few screens of a grid

QImage fitted(const QImage& image, QSize pixels)
{
    if (image.isNull() || (image.width() <= pixels.width() && image.height() <= pixels.height()))
        return image;
    return image.scaled(pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

} // namespace

// What was shown lately, by identifier and size; what was prepared, by its identifier.
struct ThumbnailProvider::Memory {
    std::optional<QImage> find(const QString& key)
    {
        const std::lock_guard lock(mutex);
        const auto* image = images.object(key);
        return image ? std::optional(*image) : std::nullopt;
    }

    void keep(const QString& key, const QImage& image)
    {
        if (image.isNull()) // the file may have come to the device when it is asked for again
            return;
        const std::lock_guard lock(mutex);
        images.insert(key, new QImage(image), 1 + image.sizeInBytes() / 1024);
    }

    std::mutex mutex;
    QCache<QString, QImage> images{kKeptKilobytes};
};

// Lives on the engine's image thread. What the queue's threads know of it is the mailbox, which it leaves when it goes.
class ThumbnailProvider::Response final : public QQuickImageResponse {
public:
    explicit Response(std::shared_ptr<ThumbnailQueue> queue) : queue_(std::move(queue)) {}

    ~Response() override
    {
        queue_->cancel(ticket_);
        const std::lock_guard lock(mailbox_->mutex);
        mailbox_->owner = nullptr;
    }

    void ask(const QByteArray& path, QSize pixels, const QString& key, std::shared_ptr<Memory> memory)
    {
        ticket_ = queue_->request(path, thumbnailSizeFor(pixels), [=, mailbox = mailbox_](const QImage& image) {
            const auto thumbnail = fitted(image, pixels);
            memory->keep(key, thumbnail);
            mailbox->deliver(thumbnail);
        });
    }

    void answer(const QImage& image) { mailbox_->deliver(image); }

    [[nodiscard]] QQuickTextureFactory* textureFactory() const override
    {
        return image_.isNull() ? nullptr : QQuickTextureFactory::textureFactoryForImage(image_);
    }

    void cancel() override
    {
        queue_->cancel(ticket_);
        mailbox_->deliver({}); // the engine waits for every response
    }

private:
    struct Mailbox {
        explicit Mailbox(Response* response) : owner(response) {}

        void deliver(const QImage& image)
        {
            const std::lock_guard lock(mutex);
            if (!owner)
                return;
            owner->image_ = image; // read by nobody before the signal
            QMetaObject::invokeMethod(owner, "finished", Qt::QueuedConnection);
            owner = nullptr;
        }

        std::mutex mutex;
        Response* owner; ///< Until the first delivery.
    };

    const std::shared_ptr<ThumbnailQueue> queue_;
    const std::shared_ptr<Mailbox> mailbox_ = std::make_shared<Mailbox>(this);
    ThumbnailQueue::Ticket ticket_ = 0;
    QImage image_;
};

ThumbnailProvider::ThumbnailProvider(ThumbnailCache cache, ThumbnailQueue::Maker maker)
    : memory_(std::make_shared<Memory>()), queue_(std::make_shared<ThumbnailQueue>(std::move(cache), std::move(maker)))
{
}

ThumbnailProvider::~ThumbnailProvider() = default;

QByteArray ThumbnailProvider::pathOf(const QString& id)
{
    const auto path = id.left(id.lastIndexOf('?')).toUtf8();
    return (path.startsWith('/') ? QByteArray() : QByteArray("/")) + QByteArray::fromPercentEncoding(path);
}

void ThumbnailProvider::prepare(const QString& id)
{
    queue_->request(pathOf(id), ThumbnailSize::Normal,
                    [memory = memory_, id](const QImage& image) { memory->keep(id, image); });
}

QQuickImageResponse* ThumbnailProvider::requestImageResponse(const QString& id, const QSize& requestedSize)
{
    const auto pixels = pixelSize(requestedSize, kUsualSide);
    const auto key = QString("%1 %2x%3").arg(id).arg(pixels.width()).arg(pixels.height());
    auto* response = new Response(queue_);
    const auto prepared = thumbnailSizeFor(pixels) == ThumbnailSize::Normal ? memory_->find(id) : std::nullopt;
    if (const auto kept = memory_->find(key))
        response->answer(*kept);
    else if (prepared)
        response->answer(fitted(*prepared, pixels));
    else
        response->ask(pathOf(id), pixels, key, memory_);
    return response;
}

} // namespace tessel::qt
