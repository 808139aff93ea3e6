#pragma once

#include <cstdint>
#include <ctime>
#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tessel {

/// A program with a window, running without a screen and looked at from outside.
class WindowProcess {
public:
    struct Command {
        std::vector<std::string> words;
        std::string meter;     ///< what the meter in the program shall do; empty: the program runs without it
        std::int64_t rows = 0; ///< that the meter waits for
        std::string cache;     ///< the folder for the program's caches; empty: the user's
    };

    explicit WindowProcess(const Command&);
    /// Ends it.
    ~WindowProcess();
    WindowProcess(const WindowProcess&) = delete;
    WindowProcess& operator=(const WindowProcess&) = delete;

    /// The monotonic clock's seconds just before it was started.
    [[nodiscard]] double started() const { return started_; }
    /// What its meter told until it ended, or for a minute: names and numbers.
    [[nodiscard]] std::map<std::string, double> readToEnd();
    /// Waits until none of its threads has used the processor for a second.
    /// @returns seconds from its start to the last use; 0 when it does not run, or does not settle in a minute
    [[nodiscard]] double secondsToSettle();
    [[nodiscard]] double processorSecondsWithin(int seconds) const;
    [[nodiscard]] double peakMegabytes() const;

private:
    [[nodiscard]] std::int64_t processorNanoseconds() const;

    pid_t child_ = -1;
    int output_ = -1;
    clockid_t processorClock_ = 0;
    double started_ = 0;
};

} // namespace tessel
