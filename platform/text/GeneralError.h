#pragma once

#include "platform/base/Error.h"

namespace tessel {

/// An error of the general domain that has nothing to tell but its code (of ErrorCode): described in the user's
/// language, no item named, no user information.
[[nodiscard]] Error generalError(int code);

} // namespace tessel
