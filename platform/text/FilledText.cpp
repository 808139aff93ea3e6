#include "platform/text/FilledText.h"

#include "platform/base/Platform.h"
#include "platform/text/TextServices.h"

#include <algorithm>
#include <cstddef>

namespace tessel {

namespace {

constexpr std::string_view kNext = "%@";
constexpr std::size_t kNumberedLength = std::string_view("%1$@").size();

/// The number, from 1, in a placeholder such as "%1$@" at the beginning of a text; 0 when there is none.
std::size_t placeholderNumber(std::string_view text)
{
    const bool isNumbered = text.size() >= kNumberedLength && text[1] >= '1' && text[1] <= '9';
    return isNumbered && text.substr(2, 2) == "$@" ? static_cast<std::size_t>(text[1] - '0') : 0;
}

} // namespace

std::string filledText(std::string_view text, const std::vector<std::string>& values)
{
    std::string filled;
    std::size_t next = 0;
    while (!text.empty()) {
        const auto literal = text.substr(0, text.find('%'));
        filled.append(literal);
        text.remove_prefix(literal.size());
        const bool isNext = text.starts_with(kNext);
        const auto number = isNext ? ++next : placeholderNumber(text);
        const bool isFilled = number >= 1 && number <= values.size();
        const auto length = !isFilled ? 1 : isNext ? kNext.size() : kNumberedLength;
        filled.append(isFilled ? std::string_view(values[number - 1]) : text.substr(0, 1));
        text.remove_prefix(std::min(length, text.size()));
    }
    return filled;
}

std::string localizedFilledText(std::string_view key, const std::vector<std::string>& values)
{
    return filledText(platform::installed().text.localized(key), values);
}

} // namespace tessel
