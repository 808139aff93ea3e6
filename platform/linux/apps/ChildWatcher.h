#pragma once

#include <sys/types.h>

#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace tessel {

/// Waits for programs that this one has started, so that none of them is left as a zombie, on a thread that the first
/// of them starts. Destroying it leaves the programs running. Main thread only.
class ChildWatcher {
public:
    /// Called on the watcher's thread when a program has ended, with its status as `waitpid` gives it.
    using Ended = std::function<void(int status)>;

    ChildWatcher() = default;
    ~ChildWatcher();
    ChildWatcher(const ChildWatcher&) = delete;
    ChildWatcher& operator=(const ChildWatcher&) = delete;

    /// @param child a child process that nobody else waits for
    void watch(pid_t child, Ended);

private:
    struct Child {
        pid_t process = -1;
        int descriptor = -1; ///< becomes readable when it ends; negative where the system cannot tell
        Ended ended;
    };

    void run();
    void wake() const;
    [[nodiscard]] bool waitForSomething();
    void reap();

    std::mutex mutex_;
    std::vector<Child> children_;
    bool isStopping_ = false;
    int wakeDescriptor_ = -1;
    std::thread thread_;
};

} // namespace tessel
