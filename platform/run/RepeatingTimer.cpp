#include "platform/run/RepeatingTimer.h"

#include "platform/base/Platform.h"

#include <algorithm>

namespace tessel {

RepeatingTimer::RepeatingTimer(DispatchQueue& queue, double interval, Task handler)
    : queue_(queue), handler_(std::move(handler)),
      interval_(std::chrono::duration_cast<Clock::Ticks>(std::chrono::duration<double>(interval))),
      start_(platform::installed().clock.uptime())
{
    fire();
}

void RepeatingTimer::fire()
{
    queue_.async([handler = handler_, expectation = DispatchQueue::main().expectation()] { handler(); });
    const auto passed = platform::installed().clock.uptime() - start_;
    round_ = std::max(round_, passed / interval_) + 1;
    const auto wait = std::chrono::duration<double>(round_ * interval_ - passed);
    next_ = DispatchQueue::main().after(wait.count(), [this] { fire(); });
}

} // namespace tessel
