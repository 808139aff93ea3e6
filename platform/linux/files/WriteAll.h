#pragma once

#include <string_view>

namespace tessel {

/// Writes all bytes at the descriptor's place. @returns false with errno set after a failure
[[nodiscard]] bool writeAll(int descriptor, std::string_view bytes);

} // namespace tessel
