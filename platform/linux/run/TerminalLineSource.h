#pragma once

#include "platform/console/LineSource.h"
#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/run/EndSignals.h"

#include <cstddef>
#include <memory>

namespace tessel {

class MainQueue;

/// Lines from a file descriptor: a terminal, a pipe or a file. Lines hold any bytes, up to 1 MiB each; a last line
/// without an end counts. From its making on, the process ignores SIGPIPE: a closed output is seen by its stream.
/// While it lives, the first SIGINT, SIGTERM or SIGHUP is the end of the input, with lines not taken yet left out, so
/// that the program can save its state; the next one ends the process. Main thread only; one at a time sees the
/// signals.
class TerminalLineSource final : public LineSource {
public:
    /// Also becomes the queue's wake handler, so it is made before other threads run; they may outlive it.
    /// @param input stays the caller's
    TerminalLineSource(MainQueue& queue, int input);

    Input next(std::optional<Clock::Ticks> timeout) override;
    void waitForWake(Clock::Ticks timeout) override;

    /// The terminal's width in characters; 80 where there is none.
    [[nodiscard]] std::size_t columns() const;

private:
    enum class WaitFor { Wake, InputAndWake };

    /// @returns whether there is input to read.
    bool poll(WaitFor, std::optional<Clock::Ticks> timeout);
    void readMore();
    [[nodiscard]] std::optional<Input> takeLine();
    [[nodiscard]] Input takeLast();
    [[nodiscard]] Input checked(std::string line);

    const int input_;
    const EndSignals endSignals_;
    const std::shared_ptr<const FileDescriptor> wakeUp_; ///< counts the wake-ups
    std::string buffer_;                                 ///< read, but not taken
    std::size_t searched_ = 0;                           ///< bytes at the beginning of the buffer that hold no line end
    bool skipping_ = false;                              ///< the rest of a line that is too long is on its way
    bool ended_ = false;
};

} // namespace tessel
