#pragma once

#include <string>
#include <vector>

namespace tessel::qt {

/// Takes from this process for good what reading a document does not need: it starts no programs, writes no files,
/// knows no network, and of files reads only those of the system and of `folders`, where the kernel can tell these
/// apart. Memory is limited. Threads remain.
/// @returns false when the kernel refuses what it should know
[[nodiscard]] bool confine(const std::vector<std::string>& folders);

/// From now on, this process may use the processor for so many seconds; then it ends.
void limitProcessorTime(int seconds);

} // namespace tessel::qt
