#pragma once

#include <string>
#include <string_view>

namespace tessel {

/// The locale in which nobody speaks: English texts made longer and foreign, written from right to left, by which one
/// sees what is not translated, does not fit, or is not mirrored.
inline constexpr std::string_view kPseudoLocale = "en_XA";

/// The text with its letters accented and half as long again, in brackets; what stands for values stays.
[[nodiscard]] std::string pseudoText(std::string_view english);

} // namespace tessel
