#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"

namespace tessel {

/// The one place where an errno becomes an Error. Codes of the general domain where there is one, else the errno itself
/// in the system domain.
[[nodiscard]] Error errnoError(int errorNumber, const URL& item);

/// The error of a file that stands for an item, or is in it, as an error of the item.
[[nodiscard]] Error errorNaming(const URL& item, Error);

} // namespace tessel
