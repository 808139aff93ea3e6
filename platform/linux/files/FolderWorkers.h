#pragma once

#include "platform/run/DispatchQueue.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace tessel {

class UnifiedLog;

/// A few threads for work that waits for disks. They are started as they are needed, so that one disk that hangs does
/// not hold up the others.
class FolderWorkers {
public:
    explicit FolderWorkers(UnifiedLog& log) : log_(log) {}
    /// Drops what has not begun and waits for the tasks that run.
    ~FolderWorkers();

    /// Runs the task on some thread. While the system has no thread for it and there is none yet, it waits for the next
    /// one that is run. Safe from any thread.
    void run(Task);

private:
    void startOneMore();
    void work();

    UnifiedLog& log_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Task> tasks_;
    std::size_t idle_ = 0;
    bool stopping_ = false;
    std::vector<std::thread> threads_;
};

} // namespace tessel
