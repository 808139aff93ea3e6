#pragma once

#include <string>
#include <string_view>

namespace tessel {

/// The text on one line, fit for a log or a terminal: "\n" for a line end, "\x1b" and the like for other control
/// characters, those from U+0080 to U+009F included, because terminals obey them as well. All else stays as it is.
[[nodiscard]] std::string escapingControlCharacters(std::string_view);

} // namespace tessel
