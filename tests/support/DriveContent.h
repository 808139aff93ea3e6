#pragma once

#include "platform/base/URL.h"

#include <map>
#include <string>

namespace tessel {

/// What is below a folder, by path: what an item is, what a file holds, and its first tag. A document that is not on
/// the device stands under its own name; where a file has that name, the file counts.
[[nodiscard]] std::map<std::string, std::string> contentOf(const URL& folder);

/// One item, in the same words.
[[nodiscard]] std::string contentOfItem(const URL&);

} // namespace tessel
