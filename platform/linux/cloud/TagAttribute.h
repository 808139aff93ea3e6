#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"

#include <string>
#include <vector>

namespace tessel {

/// The attribute in which programs of the desktop keep an item's tags: names separated by commas, UTF-8.
inline constexpr const char* kTagAttribute = "user.xdg.tags";

/// The tag names of the file itself, blanks around them trimmed; the first 64 of those that are text. Links have none.
Result<std::vector<std::string>> readTagNames(const URL&);

} // namespace tessel
