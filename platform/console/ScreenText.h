#pragma once

#include "platform/console/ScreenElement.h"

#include <string>

namespace tessel {

/// The screen as lines of `key: value`.
[[nodiscard]] std::string screenLines(const Screen&);

/// The screen as one line with a JSON object (RFC 8259). Keys that can repeat are always arrays.
[[nodiscard]] std::string screenJSON(const Screen&);

} // namespace tessel
