#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace tessel {

struct ProgramStart {
    std::string path;                   ///< of the program
    std::vector<std::string> arguments; ///< the first is the program's own name
    std::string workingFolder;          ///< one that can be entered
    std::string activationToken;        ///< by which its window may come to the front; empty for none
    int input = -1;   ///< a descriptor that it reads as its standard input; negative for nothing to read
    int channel = -1; ///< a descriptor that is open in it as 3, together with our standard error; negative for neither
};

/// Starts a program that has nothing of this one but its environment: it is in a session of its own, so that no
/// terminal's end ends it, its standard streams lead nowhere but for such an input, no other descriptor is open in it,
/// and signals are as a login leaves them; but for a part of this program, which a channel ties to it. Returns when the
/// program runs, or cannot.
/// @param child gets the process, which is a child of this one
/// @returns 0, or the errno that stopped it
[[nodiscard]] int startProgram(const ProgramStart&, pid_t& child);

} // namespace tessel
