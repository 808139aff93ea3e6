#include "platform/qt/thumbnails/ThumbnailQueue.h"

#include <algorithm>
#include <optional>

namespace tessel::qt {

struct ThumbnailQueue::Job {
    explicit Job(Key ofJob) : key(std::move(ofJob)) {}

    const Key key;
    Ticket newest = 0; ///< Of those that wait, or have waited.
    std::map<Ticket, Answer> waiting;
    std::optional<ThumbnailOriginal> original; ///< Once it was looked for.
};

ThumbnailQueue::ThumbnailQueue(ThumbnailCache cache, Maker maker, std::size_t makers)
    : cache_(std::move(cache)), maker_(std::move(maker)), making_("thumbnails make", QualityOfService::Utility, makers),
      looking_("thumbnails look", QualityOfService::Utility)
{
}

ThumbnailQueue::~ThumbnailQueue()
{
    const std::lock_guard lock(mutex_);
    toLookFor_.clear();
    toMake_.clear();
    tickets_.clear();
    jobs_.clear();
    stop_.request_stop();
}

ThumbnailQueue::Ticket ThumbnailQueue::request(const QByteArray& path, ThumbnailSize size, Answer answer)
{
    const std::lock_guard lock(mutex_);
    const auto ticket = ++lastTicket_;
    auto& job = jobs_[{path, size}];
    if (!job) {
        job = std::make_shared<Job>(Key(path, size));
        toLookFor_.push_back(job);
        looking_.addOperation([this] { lookNext(); });
    }
    job->newest = ticket;
    job->waiting.emplace(ticket, std::move(answer));
    tickets_.emplace(ticket, job);
    return ticket;
}

void ThumbnailQueue::cancel(Ticket ticket)
{
    const std::lock_guard lock(mutex_);
    const auto found = tickets_.find(ticket);
    if (found == tickets_.end())
        return;
    const auto job = found->second;
    tickets_.erase(found);
    job->waiting.erase(ticket);
    if (!job->waiting.empty())
        return;
    jobs_.erase(job->key);
    std::erase(toLookFor_, job);
    std::erase(toMake_, job);
}

std::shared_ptr<ThumbnailQueue::Job> ThumbnailQueue::takeNewest(Jobs& jobs)
{
    const std::lock_guard lock(mutex_);
    if (jobs.empty()) // each job has an operation, also one that was cancelled
        return nullptr;
    const auto newest = std::ranges::max_element(jobs, {}, [](const auto& job) { return job->newest; });
    auto job = *newest;
    jobs.erase(newest);
    return job;
}

void ThumbnailQueue::lookNext()
{
    const auto job = takeNewest(toLookFor_);
    if (!job)
        return;
    const auto& [path, size] = job->key;
    job->original = ThumbnailOriginal::at(path);
    if (!job->original || cache_.contains(path))
        return finish(job, {});
    if (const auto image = cache_.find(*job->original, size); !image.isNull() || cache_.hasFailed(*job->original))
        return finish(job, image);
    const std::lock_guard lock(mutex_);
    if (job->waiting.empty())
        return;
    toMake_.push_back(job);
    making_.addOperation([this] { makeNext(); });
}

void ThumbnailQueue::makeNext()
{
    const auto job = takeNewest(toMake_);
    if (!job)
        return;
    const auto& original = *job->original;
    const auto made = maker_(original, job->key.second, stop_.get_token());
    if (!original.isUnchanged()) // it is being written: what was read may be half of it
        return finish(job, {});
    if (made.outcome == MadeThumbnail::Outcome::Failed)
        cache_.markFailed(original);
    finish(job, made.image);
    if (made.outcome == MadeThumbnail::Outcome::Made) // what waits to be made comes before
        making_.addOperation([this, job, image = made.image] { cache_.save(*job->original, job->key.second, image); });
}

void ThumbnailQueue::finish(const std::shared_ptr<Job>& job, const QImage& image)
{
    std::map<Ticket, Answer> waiting;
    {
        const std::lock_guard lock(mutex_);
        waiting.swap(job->waiting);
        for (const auto& [ticket, answer] : waiting)
            tickets_.erase(ticket);
        // A new job may have the key by now, when this one was cancelled under way.
        if (const auto found = jobs_.find(job->key); found != jobs_.end() && found->second == job)
            jobs_.erase(found);
    }
    for (const auto& [ticket, answer] : waiting)
        answer(image);
}

} // namespace tessel::qt
