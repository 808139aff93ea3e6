#pragma once

#include <string>

namespace tessel {

/// Where the user's programs keep their data: $XDG_DATA_HOME, or ".local/share" in the user's own folder (XDG Base
/// Directory Specification). Empty when the user has no folder.
[[nodiscard]] std::string userDataFolder();

} // namespace tessel
