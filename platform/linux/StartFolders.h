#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"

#include <string>

namespace tessel {

/// The folders that a start is given, links resolved. An error's description is one line for the user.

/// Makes the folder and its parents (mode 0700) when they are missing.
/// @param path empty: "tesseldrive" in the user's data folder
/// @returns an error when it cannot be made, or neither be written nor read as the home of an earlier start
Result<URL> homeFolder(const std::string& path);

/// @returns an error for what is no folder, or one that cannot be read
Result<URL> driveFolder(const std::string& path);

/// Where the user's programs agree on who may touch which file: in the user's runtime folder, or in the home where
/// there is none. Made when somebody needs it.
[[nodiscard]] URL coordinationFolder(const URL& home);

} // namespace tessel
