#pragma once

#include <string>
#include <string_view>

namespace tessel {

/// TextServices::displayName, which is the same in every language.
[[nodiscard]] std::string displayText(std::string_view fileName);

/// TextServices::searchFolded: NFKC_Casefold (Unicode 15, section 3.13) without nonspacing marks.
[[nodiscard]] std::string searchFoldedText(std::string_view text);

/// Whether two texts differ in case at most, canonical equivalents being the same. Text that is no UTF-8 equals itself
/// alone.
/// @param locale Turkish and its relatives have their own case pairs for the letter i.
[[nodiscard]] bool equalTextsIgnoringCase(std::string_view left, std::string_view right, std::string_view locale);

} // namespace tessel
