#pragma once

#include "platform/console/LineSource.h"
#include "platform/linux/files/FileDescriptor.h"

#include <cstddef>

namespace tessel {

/// Lines from a file descriptor: a terminal, a pipe or a file. Lines hold any bytes, up to 1 MiB each; a last line
/// without an end counts. From its making on, the process ignores SIGPIPE: a closed output is seen by its stream.
///
/// Main thread only, but for `wake`.
class TerminalLineSource final : public LineSource {
public:
    /// @param input stays the caller's
    explicit TerminalLineSource(int input);

    Input next(std::optional<Clock::Ticks> timeout) override;
    void waitForWake(Clock::Ticks timeout) override;

    /// Ends the wait under way, or the next one. For the main queue's wake handler; safe from any thread.
    void wake() const;

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
    const FileDescriptor wakeUp_;
    std::string buffer_;       ///< read, but not taken
    std::size_t searched_ = 0; ///< bytes at the beginning of the buffer that hold no line end
    bool skipping_ = false;    ///< the rest of a line that is too long is on its way
    bool ended_ = false;
};

} // namespace tessel
