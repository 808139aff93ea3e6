#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tessel {

/// Base64 with padding and without line breaks (RFC 4648, section 4).
[[nodiscard]] std::string base64Encoded(std::string_view bytes);

/// None for anything that `base64Encoded` would not have made.
[[nodiscard]] std::optional<std::string> base64Decoded(std::string_view text);

} // namespace tessel
