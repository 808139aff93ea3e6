#pragma once

#include "platform/run/DispatchQueue.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>

namespace tessel {

/// A named queue with one thread of its own, started by the first task.
class SerialQueue final : public DispatchQueue {
public:
    explicit SerialQueue(std::string name, QualityOfService = QualityOfService::UserInitiated);
    /// Drops what has not begun and waits for the task that runs. Never call it from a task of this queue.
    ~SerialQueue() override;

    void async(Task) override;

    [[nodiscard]] const std::string& name() const { return name_; }

private:
    void run();

    const std::string name_;
    const QualityOfService quality_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Task> tasks_;
    bool stopping_ = false;
    std::thread thread_;
};

} // namespace tessel
