#include "platform/linux/text/UserLocale.h"

#include "platform/linux/text/PseudoTexts.h"

#include <unicode/uloc.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace tessel {

namespace {

constexpr std::string_view kFallback = "en";

std::string_view localeOfEnvironment()
{
    for (const auto* variable : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (const auto* value = std::getenv(variable); value && *value)
            return value;
    return {};
}

bool isLetter(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

/// A language of two or three letters, then parts of letters and digits: "de", "de_DE", "sr_Latn_RS".
bool isLocaleName(std::string_view name)
{
    const auto language = name.substr(0, name.find('_'));
    return (language.size() == 2 || language.size() == 3) && std::all_of(language.begin(), language.end(), isLetter) &&
           name.size() <= 32 && std::all_of(name.begin(), name.end(), [](char character) {
               return isLetter(character) || character == '_' || (character >= '0' && character <= '9');
           });
}

} // namespace

std::string userLocale()
{
    auto name = localeOfEnvironment();
    name = name.substr(0, name.find_first_of(".@"));
    return std::string(isLocaleName(name) ? name : kFallback);
}

bool isRightToLeft(const std::string& locale)
{
    return locale == kPseudoLocale || uloc_isRightToLeft(locale.c_str());
}

} // namespace tessel
