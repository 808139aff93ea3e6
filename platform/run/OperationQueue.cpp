#include "platform/run/OperationQueue.h"

#include "platform/run/CurrentThread.h"
#include "platform/run/StartThread.h"

#include <utility>

namespace tessel {

OperationQueue::OperationQueue(std::string name, QualityOfService quality, std::size_t maximumConcurrentOperations)
    : name_(std::move(name)), quality_(quality), maximum_(maximumConcurrentOperations)
{
}

OperationQueue::~OperationQueue()
{
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    waiting_.clear(); // nobody else looks at it any more
    changed_.notify_all();
    for (auto& thread : threads_)
        thread.join();
}

void OperationQueue::addOperation(Task operation)
{
    const std::lock_guard lock(mutex_);
    if (stopping_)
        return;
    waiting_.push_back(std::move(operation));
    if (waiting_.size() > idleThreads_ && threads_.size() < maximum_)
        if (auto thread = startThread([this] { run(); }); thread.joinable())
            threads_.push_back(std::move(thread));
    changed_.notify_one();
}

void OperationQueue::run()
{
    applyQualityOfService(quality_, name_);
    while (const auto operation = next())
        (*operation)();
}

std::optional<Task> OperationQueue::next()
{
    std::unique_lock lock(mutex_);
    ++idleThreads_;
    changed_.wait(lock, [this] { return stopping_ || !waiting_.empty(); });
    --idleThreads_;
    if (stopping_)
        return std::nullopt;
    auto operation = std::move(waiting_.front());
    waiting_.pop_front();
    return operation;
}

} // namespace tessel
