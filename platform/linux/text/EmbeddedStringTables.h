#pragma once

#include <map>
#include <string_view>

namespace tessel {

/// The string tables that were built into the program: their JSON text by language code ("en", "de").
[[nodiscard]] const std::map<std::string_view, std::string_view>& embeddedStringTables();

} // namespace tessel
