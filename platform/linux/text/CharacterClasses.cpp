#include "platform/linux/text/CharacterClasses.h"

#include <cstdint>

#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace tessel {

namespace {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion" // inside the macro

/// The character that begins at `at`, which moves behind it; below 0 for what is no UTF-8.
UChar32 nextCharacter(std::string_view text, std::int32_t& at)
{
    UChar32 character = 0;
    U8_NEXT(text.data(), at, static_cast<std::int32_t>(text.size()), character);
    return character;
}

#pragma GCC diagnostic pop

/// The same backwards.
UChar32 previousCharacter(std::string_view text, std::int32_t& at)
{
    UChar32 character = 0;
    U8_PREV(text.data(), 0, at, character);
    return character;
}

bool isNewline(UChar32 character)
{
    return (character >= 0x0A && character <= 0x0D) || character == 0x85 || character == 0x2028 || character == 0x2029;
}

bool isOfClass(UChar32 character, CharacterClass characters)
{
    switch (characters) {
    case CharacterClass::Illegal:
        return character < 0 || u_charType(character) == U_UNASSIGNED;
    case CharacterClass::Control:
        return character >= 0 && (U_MASK(u_charType(character)) & (U_GC_CC_MASK | U_GC_CF_MASK)) != 0;
    case CharacterClass::Newline:
        return isNewline(character);
    }
    return false;
}

bool isBlank(UChar32 character)
{
    return character >= 0 && (character == '\t' || isNewline(character) || u_charType(character) == U_SPACE_SEPARATOR);
}

} // namespace

bool textContainsCharacter(std::string_view text, CharacterClass characters)
{
    for (std::int32_t at = 0; at < static_cast<std::int32_t>(text.size());)
        if (isOfClass(nextCharacter(text, at), characters))
            return true;
    return false;
}

std::string_view trimmedText(std::string_view text)
{
    for (auto at = static_cast<std::int32_t>(text.size()); at > 0 && isBlank(previousCharacter(text, at));)
        text = text.substr(0, static_cast<std::size_t>(at));
    while (!text.empty()) {
        std::int32_t at = 0;
        if (!isBlank(nextCharacter(text, at)))
            break;
        text.remove_prefix(static_cast<std::size_t>(at));
    }
    return text;
}

} // namespace tessel
