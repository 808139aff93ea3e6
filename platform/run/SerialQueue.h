#pragma once

#include "platform/run/DispatchQueue.h"
#include "platform/run/OperationQueue.h"

#include <string>
#include <utility>

namespace tessel {

/// A named queue with one thread of its own, started by the first task. Destroying it drops what has not begun and
/// waits for the task that runs; never do so from a task of this queue.
class SerialQueue final : public DispatchQueue {
public:
    explicit SerialQueue(std::string name, QualityOfService quality = QualityOfService::UserInitiated)
        : operations_(std::move(name), quality)
    {
    }

    void async(Task task) override { operations_.addOperation(std::move(task)); }

private:
    OperationQueue operations_;
};

} // namespace tessel
