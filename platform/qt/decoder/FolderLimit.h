#pragma once

#include <string>
#include <vector>

namespace tessel::qt {

/// From now on this thread, and those that it starts, open files of the system and of `readable` only, and only for
/// reading; `writable` are files and folders of devices that are opened for writing, too. Nothing is made or removed.
/// What is open stays so, and sockets are reached as before. `PR_SET_NO_NEW_PRIVS` must be set.
/// @returns false when the kernel refuses what it should know; true also where it does not know how
[[nodiscard]] bool limitFolders(const std::vector<std::string>& readable,
                                const std::vector<std::string>& writable = {});

} // namespace tessel::qt
