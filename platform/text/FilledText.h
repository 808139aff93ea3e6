#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// A text with its placeholders replaced by values: "%1$@", "%2$@" and so on by the value of that number, the n-th "%@"
/// by the n-th. Placeholders without a value stay, as does any other percent sign.
[[nodiscard]] std::string filledText(std::string_view text, const std::vector<std::string>& values);

/// The text for a key of the main table in the user's language, filled.
[[nodiscard]] std::string localizedFilledText(std::string_view key, const std::vector<std::string>& values);

} // namespace tessel
