#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tessel {

/// The bytes of a percent-encoded text (RFC 3986, 2.1), which need not be UTF-8.
/// @returns none when a percent sign is not followed by two hexadecimal digits
[[nodiscard]] std::optional<std::string> percentDecoded(std::string_view);
/// A path, percent-encoded as in a URL: all but '/' and what RFC 3986 lets stand in a path's segment.
[[nodiscard]] std::string percentEncodedPath(std::string_view path);

} // namespace tessel
