#pragma once

#include <string>

namespace tessel {

/// The user's locale for texts and formats, as ICU names it ("de_DE"), from LC_ALL, LC_MESSAGES or LANG, whichever is
/// the first that is set; "en" for "C", "POSIX" and what no locale can be.
[[nodiscard]] std::string userLocale();

/// Whether the locale's language is written from right to left.
[[nodiscard]] bool isRightToLeft(const std::string& locale);

} // namespace tessel
