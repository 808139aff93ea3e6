#pragma once

#include "platform/run/MainQueue.h"

#include <cstdint>

namespace tessel {

/// Adds a task to a queue at once, and again each time that an interval has passed on the clock since then. An addition
/// that is late does not move the later ones, and stands for all that should have been made before it. Made and
/// destroyed on the main thread; a task that was added already may still run after that.
class RepeatingTimer {
public:
    /// @param queue outlives the timer
    /// @param interval seconds, above 0
    RepeatingTimer(DispatchQueue& queue, double interval, Task handler);
    ~RepeatingTimer() { next_.cancel(); }
    RepeatingTimer(const RepeatingTimer&) = delete;
    RepeatingTimer& operator=(const RepeatingTimer&) = delete;

private:
    void fire();

    DispatchQueue& queue_;
    const Task handler_;
    const Clock::Ticks interval_;
    const Clock::Ticks start_;
    std::int64_t round_ = 0; ///< of the next firing; the first is 0
    MainQueue::DelayedTask next_;
};

} // namespace tessel
