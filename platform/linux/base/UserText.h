#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// The text for a key of the main table in the user's language, its placeholders filled with values; the key itself,
/// filled, while no platform is installed.
[[nodiscard]] std::string userText(std::string_view key, const std::vector<std::string>& values = {});

/// A file name as it may stand in such a text.
[[nodiscard]] std::string userTextName(std::string_view fileName);

} // namespace tessel
