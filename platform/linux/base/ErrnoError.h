#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"

namespace tessel {

/// The one place where an errno becomes an Error. Codes of the general domain where there is one, else the errno itself
/// in the system domain.
[[nodiscard]] Error errnoError(int errorNumber, const URL& item);

} // namespace tessel
