#include "platform/run/MainQueue.h"

#include "platform/base/Platform.h"

namespace tessel {

MainQueue& DispatchQueue::main()
{
    return platform::installed().mainQueue;
}

void MainQueue::async(Task task)
{
    {
        const std::lock_guard lock(mutex_);
        ready_.push_back(std::move(task));
    }
    wake();
}

MainQueue::DelayedTask MainQueue::after(double seconds, Task task)
{
    const auto due = clock_.uptime() + std::chrono::duration_cast<Clock::Ticks>(std::chrono::duration<double>(seconds));
    auto shared = std::make_shared<Task>(std::move(task));
    {
        const std::lock_guard lock(mutex_);
        delayed_.emplace(due, shared);
    }
    wake();
    return DelayedTask(std::move(shared));
}

bool MainQueue::runReady()
{
    bool ran = false;
    while (runOne())
        ran = true;
    return ran;
}

bool MainQueue::runOne()
{
    const auto task = takeReady();
    if (task)
        (*task)();
    return task.has_value();
}

std::optional<Clock::Ticks> MainQueue::nextDue() const
{
    const std::lock_guard lock(mutex_);
    return delayed_.empty() ? std::nullopt : std::optional(delayed_.begin()->first);
}

void MainQueue::drop()
{
    for (bool isEmpty = false; !isEmpty;) { // what goes may add tasks
        decltype(ready_) ready;
        decltype(delayed_) delayed;
        const std::unique_lock lock(mutex_);
        std::swap(ready, ready_);
        std::swap(delayed, delayed_);
        isEmpty = ready.empty() && delayed.empty();
    }
}

MainQueue::Expectation MainQueue::expectation()
{
    ++expectations_;
    return {this, [](MainQueue* queue) {
                --queue->expectations_;
                queue->wake();
            }};
}

std::optional<Task> MainQueue::takeReady()
{
    const std::lock_guard lock(mutex_);
    moveDueToReady();
    if (ready_.empty())
        return std::nullopt;
    auto task = std::move(ready_.front());
    ready_.pop_front();
    return task;
}

void MainQueue::moveDueToReady()
{
    if (delayed_.empty())
        return;
    const auto firstLater = delayed_.upper_bound(clock_.uptime());
    for (auto due = delayed_.begin(); due != firstLater; due = delayed_.erase(due))
        // Taken out only when it runs, so that it can be cancelled until then, and not while it runs.
        ready_.push_back([delayed = due->second] {
            if (const auto task = std::exchange(*delayed, nullptr))
                task();
        });
}

void MainQueue::wake() const
{
    if (wake_)
        wake_();
}

} // namespace tessel
