#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// A document that the program's icon leads to.
struct RecentDocument {
    std::uint32_t identifier;
    std::string name; ///< as it may be shown: valid UTF-8
};

/// The program's own desktop entry with one action more for each document, "recent" with its number, the first one
/// first, and a key that says who wrote it. Where the program is gone the entry counts for nothing.
/// @returns none for a text that is no entry of an application that can be run
[[nodiscard]] std::optional<std::string> shortcutEntry(std::string_view installed, const std::vector<RecentDocument>&);

/// The documents of such an entry, in its order; none for an entry that somebody else wrote.
[[nodiscard]] std::optional<std::vector<std::uint32_t>> documentsOfShortcutEntry(std::string_view entry);

} // namespace tessel
