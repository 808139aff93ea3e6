#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

namespace tessel {

struct LockHolder {
    pid_t process = 0;
    std::string name; ///< of the program
};

/// Who holds a lock on any of a file's bytes, by an open file description; none when no such process can be seen. Looks
/// at every process, so it is for those who have waited in vain.
/// @param file open
[[nodiscard]] std::optional<LockHolder> findLockHolder(int file, off_t start, off_t length);

} // namespace tessel
