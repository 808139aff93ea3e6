#pragma once

#include "platform/run/DispatchQueue.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace tessel {

/// A named queue whose operations begin in the order in which they were added, on threads of its own, no more than
/// `maximumConcurrentOperations` (>= 1) at a time. A thread is started when an operation would wait for want of one.
/// When the system has none left, the operation waits for one of the others, or for the next operation to be added.
class OperationQueue {
public:
    OperationQueue(std::string name, QualityOfService, std::size_t maximumConcurrentOperations = 1);
    /// Drops what has not begun and waits for what runs: no operation outlives its queue. Never call it from an
    /// operation of this queue, which would wait for itself.
    ~OperationQueue();
    OperationQueue(const OperationQueue&) = delete;
    OperationQueue& operator=(const OperationQueue&) = delete;

    /// Adds an operation; returns at once. Safe from any thread, also from the queue's own operations; one that is
    /// added while the queue is being destroyed is dropped.
    void addOperation(Task);

private:
    void run();
    std::optional<Task> next();

    const std::string name_;
    const QualityOfService quality_;
    const std::size_t maximum_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Task> waiting_;
    std::size_t idleThreads_ = 0;
    bool stopping_ = false;
    std::vector<std::thread> threads_;
};

} // namespace tessel
