#pragma once

#include "platform/qt/thumbnails/ThumbnailCache.h"
#include "platform/qt/thumbnails/ThumbnailMaker.h"
#include "platform/run/OperationQueue.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace tessel::qt {

/// Finds thumbnails in the desktop's cache, and makes those that are missing: the newest request first, because it is
/// for what has just come on screen. A file that is asked for several times is looked at once. What is there need not
/// wait for what must be made: its thread is another. Safe to use from any thread.
class ThumbnailQueue {
public:
    /// A null image when there is none. Called once, on a thread of the queue.
    using Answer = std::function<void(const QImage&)>;
    using Maker = std::function<MadeThumbnail(const ThumbnailOriginal&, ThumbnailSize, const std::stop_token&)>;
    using Ticket = std::uint64_t;

    /// @param makers how many thumbnails are made at the same time
    explicit ThumbnailQueue(ThumbnailCache, Maker = makeThumbnail, std::size_t makers = 2);
    /// Drops the requests, and stops the making of those that are being worked on. What was made and is not kept yet
    /// is made again another time.
    ~ThumbnailQueue();
    ThumbnailQueue(const ThumbnailQueue&) = delete;
    ThumbnailQueue& operator=(const ThumbnailQueue&) = delete;

    /// Returns at once. The size of the image is that or a larger one.
    Ticket request(const QByteArray& path, ThumbnailSize, Answer);
    /// The answer is called no more, unless it is being called already; work that nobody waits for does not begin.
    void cancel(Ticket);

private:
    using Key = std::pair<QByteArray, ThumbnailSize>;
    struct Job;
    using Jobs = std::vector<std::shared_ptr<Job>>;

    void lookNext();
    void makeNext();
    [[nodiscard]] std::shared_ptr<Job> takeNewest(Jobs&);
    void finish(const std::shared_ptr<Job>&, const QImage&);

    const ThumbnailCache cache_;
    const Maker maker_;
    std::stop_source stop_;
    std::mutex mutex_;
    Ticket lastTicket_ = 0;
    std::map<Key, std::shared_ptr<Job>> jobs_; ///< All that somebody waits for.
    std::map<Ticket, std::shared_ptr<Job>> tickets_;
    Jobs toLookFor_;
    Jobs toMake_;
    OperationQueue making_;  ///< These two end first: their operations use all else, and those that look add to
    OperationQueue looking_; ///< those that make.
};

} // namespace tessel::qt
