#pragma once

#include <functional>
#include <memory>

namespace tessel {

class MainQueue;

using Task = std::function<void()>;

/// How urgent a queue's work is; it becomes the scheduling priority of the queue's thread.
enum class QualityOfService { UserInitiated, Utility, Background };

/// Runs tasks one at a time, in the order in which they were added.
class DispatchQueue {
public:
    virtual ~DispatchQueue() = default;

    /// Adds a task; returns at once. Safe from any thread, also from the queue's own tasks.
    virtual void async(Task) = 0;

    /// The queue on which all views, controllers, actions and entry points live.
    [[nodiscard]] static MainQueue& main();
};

} // namespace tessel
