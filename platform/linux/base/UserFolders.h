#pragma once

#include <string>

namespace tessel {

/// Where the user's programs keep their data: $XDG_DATA_HOME, or ".local/share" in the user's own folder (XDG Base
/// Directory, freedesktop). Empty when the user has no folder.
[[nodiscard]] std::string userDataFolder();
/// The same for what is worth keeping between two runs, and no more: $XDG_STATE_HOME, or ".local/state".
[[nodiscard]] std::string userStateFolder();
/// The same for what the user has chosen: $XDG_CONFIG_HOME, or ".config".
[[nodiscard]] std::string userConfigurationFolder();
/// Where the user's programs keep what no restart outlives: $XDG_RUNTIME_DIR; empty where there is none.
[[nodiscard]] std::string userRuntimeFolder();

} // namespace tessel
