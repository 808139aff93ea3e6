#pragma once

#include "platform/ui/OutsideRequest.h"

#include <optional>
#include <string>
#include <string_view>

namespace tessel {

/// A request as one start gives it to another, and back.
[[nodiscard]] std::string textOf(const OutsideRequest&);
/// @returns none for what is no such text, in whole or in part
[[nodiscard]] std::optional<OutsideRequest> requestIn(std::string_view text);

} // namespace tessel
