#pragma once

#include "platform/qt/thumbnails/ThumbnailQueue.h"

#include <QCache>
#include <QQuickAsyncImageProvider>

#include <memory>
#include <mutex>

namespace tessel::qt {

/// Thumbnails of files: "image://thumbnail/<percent-encoded path>?<time of the last change, as any number>". The
/// number makes a changed file another image to the views; it is not looked at otherwise.
///
/// A thumbnail fits into the requested size, 128 pixels when none is requested. A file that has none answers an empty
/// image without an error: ready, of size 0. No file is touched on the thread of the views or on the engine's.
class ThumbnailProvider final : public QQuickAsyncImageProvider {
public:
    explicit ThumbnailProvider(ThumbnailCache, ThumbnailQueue::Maker = makeThumbnail);
    ~ThumbnailProvider() override;

    /// Any thread with an event loop, which gets the response's signals.
    QQuickImageResponse* requestImageResponse(const QString& id, const QSize& requestedSize) override;

    /// Has a thumbnail looked for and, where there is none, made before a view asks for it. Any thread.
    void prepare(const QString& id);

    /// "/home/jens/me.png" of "/home/jens/me.png?1700000000", byte for byte.
    [[nodiscard]] static QByteArray pathOf(const QString& id);

private:
    struct Memory;
    class Response;

    const std::shared_ptr<Memory> memory_; ///< Answers that are under way outlive the provider's own part.
    const std::shared_ptr<ThumbnailQueue> queue_;
};

} // namespace tessel::qt
