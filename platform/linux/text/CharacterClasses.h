#pragma once

#include "platform/text/TextServices.h"

#include <string_view>

namespace tessel {

// TextServices::containsCharacter and ::trimmed by ICU's character database, which needs no opening.

[[nodiscard]] bool textContainsCharacter(std::string_view text, CharacterClass);

[[nodiscard]] std::string_view trimmedText(std::string_view text);

} // namespace tessel
