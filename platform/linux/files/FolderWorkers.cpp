#include "platform/linux/files/FolderWorkers.h"

#include "platform/log/UnifiedLog.h"
#include "platform/run/CurrentThread.h"
#include "platform/run/StartThread.h"

#include <utility>

namespace tessel {

namespace {

constexpr std::size_t kMaximumThreads = 8;

} // namespace

FolderWorkers::~FolderWorkers()
{
    std::deque<Task> dropped; // destroyed without the lock, for tasks own what may call back
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        dropped.swap(tasks_);
    }
    changed_.notify_all();
    for (auto& thread : threads_)
        thread.join();
}

void FolderWorkers::run(Task task)
{
    const std::lock_guard lock(mutex_);
    if (stopping_)
        return;
    tasks_.push_back(std::move(task));
    if (idle_ < tasks_.size() && threads_.size() < kMaximumThreads)
        startOneMore();
    changed_.notify_one();
}

void FolderWorkers::startOneMore()
{
    if (auto thread = startThread([this] { work(); }); thread.joinable())
        threads_.push_back(std::move(thread));
    else
        log_.write(LogLevel::Error, "No thread left for folders beside %@", threads_.size());
}

void FolderWorkers::work()
{
    applyQualityOfService(QualityOfService::UserInitiated, "folders");
    std::unique_lock lock(mutex_);
    while (true) {
        idle_++;
        changed_.wait(lock, [this] { return stopping_ || !tasks_.empty(); });
        idle_--;
        if (stopping_)
            return;
        Task task = std::move(tasks_.front());
        tasks_.pop_front();
        lock.unlock();
        task();
        task = nullptr;
        lock.lock();
    }
}

} // namespace tessel
