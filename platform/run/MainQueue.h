#pragma once

#include "platform/run/Clock.h"
#include "platform/run/DispatchQueue.h"

#include <atomic>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

namespace tessel {

/// The main queue. A shell's loop drains it; nothing runs on it by itself.
///
/// `async` and `after` may be called from any thread, everything else on the main thread.
class MainQueue final : public DispatchQueue {
public:
    /// A delayed task that has not run yet, or none. Destroying it does nothing; `cancel` takes the task back and lets
    /// go of what it holds. Cancelling twice, late, or from the task itself does nothing.
    class DelayedTask {
    public:
        DelayedTask() = default;

        void cancel()
        {
            if (task_)
                std::exchange(*task_, nullptr);
        }

    private:
        friend class MainQueue;
        explicit DelayedTask(std::shared_ptr<Task> task) : task_(std::move(task)) {}

        std::shared_ptr<Task> task_;
    };

    explicit MainQueue(const Clock& clock) : clock_(clock) {}

    void async(Task) override;

    /// Runs the task once `seconds` (>= 0) have passed on the clock, behind earlier tasks due at the same moment.
    /// Cancel on the main thread only.
    DelayedTask after(double seconds, Task);

    /// Runs what is ready, tasks that these add included, until nothing is.
    /// @returns whether anything ran.
    bool runReady();

    /// Runs at most one ready task, for loops that must look elsewhere in between.
    bool runOne();

    /// When the next delayed task falls due, by the clock's uptime. A cancelled one still counts.
    [[nodiscard]] std::optional<Clock::Ticks> nextDue() const;

    /// Lets go of all tasks that have not run, and of what they hold, while all that they may need is still there.
    void drop();

    /// Held by work on another thread that may add a task here, which then holds it, too. Safe from any thread.
    using Expectation = std::shared_ptr<const void>;
    [[nodiscard]] Expectation expectation();
    /// Whether one is held: what is ready is then not all that comes.
    [[nodiscard]] bool isExpecting() const { return expectations_ > 0; }

    /// Called, from any thread, when a task was added or an expectation has ended: the shell's chance to wake its loop.
    /// Set before other threads run.
    void setWakeHandler(std::function<void()> handler) { wake_ = std::move(handler); }

private:
    std::optional<Task> takeReady();
    void moveDueToReady();
    void wake() const;

    const Clock& clock_;
    std::function<void()> wake_;
    std::atomic<std::size_t> expectations_ = 0;
    mutable std::mutex mutex_;
    std::deque<Task> ready_;
    std::multimap<Clock::Ticks, std::shared_ptr<Task>> delayed_;
};

} // namespace tessel
