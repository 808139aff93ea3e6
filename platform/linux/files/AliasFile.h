#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"

namespace tessel {

/// An alias file is a desktop entry of type Link (freedesktop Desktop Entry Specification), named "….desktop", of at
/// most 64 KiB. Files of other names are not read.
[[nodiscard]] bool isAliasFile(const URL&);

/// Where an alias file points: its file URL's path, whether something is there or not. A corrupt-file error (259) for
/// what is no alias file, or one with another kind of URL.
Result<URL> targetOfAliasFile(const URL&);

} // namespace tessel
