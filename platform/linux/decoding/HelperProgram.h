#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <sys/types.h>

#include <optional>
#include <string>

namespace tessel {

/// A program of our own that runs, with this end of a socket that keeps messages apart. Whoever has it ends it.
struct HelperProgram {
    pid_t process = -1;
    FileDescriptor socket;
};

/// @returns none when the program cannot be started
[[nodiscard]] std::optional<HelperProgram> startHelper(const std::string& program);

/// Kills a program that `startHelper` has started, and waits until it is gone. @returns its status as `waitpid` gives
/// it: it may have ended before
[[nodiscard]] int endHelper(pid_t);

} // namespace tessel
