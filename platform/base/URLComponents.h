#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// A URL from outside, taken apart (RFC 3986) without resolving it against anything. Authority and fragment are passed
/// over.
struct URLComponents {
    struct QueryItem {
        std::string name;                 ///< percent-decoded
        std::optional<std::string> value; ///< likewise; none for an item without "="
    };

    std::string scheme; ///< as it was written
    std::string path;   ///< percent-decoded
    std::vector<QueryItem> queryItems;

    /// @returns none for a text that is no URL: without a scheme, with blanks or control characters, longer than 64
    /// KiB,
    ///          or with a percent sign that two hexadecimal digits do not follow
    [[nodiscard]] static std::optional<URLComponents> parse(std::string_view);
};

} // namespace tessel
