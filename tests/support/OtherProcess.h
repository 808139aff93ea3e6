#pragma once

#include <functional>
#include <string>
#include <sys/types.h>

namespace tessel {

/// A second process, forked from the test, which does one piece of work and meets the test where both want to. Killed
/// at the latest when this is destroyed. Its work starts no threads.
class OtherProcess {
public:
    /// @param work gets the process itself, for `meet`
    explicit OtherProcess(const std::function<void(OtherProcess&)>& work);
    ~OtherProcess();
    OtherProcess(const OtherProcess&) = delete;
    OtherProcess& operator=(const OtherProcess&) = delete;

    /// Waits until the other one meets, too: what either did before it has happened. Throws when the other one has
    /// ended, and after 30 seconds.
    void meet() const;

    void kill();
    /// Waits for its end. @returns whether its work was done
    bool finish();

    [[nodiscard]] pid_t identifier() const { return child_; }

private:
    pid_t child_ = -1;
    int socket_ = -1;
};

} // namespace tessel
