#include "platform/linux/text/IcuTextServices.h"

#include "platform/linux/text/CharacterClasses.h"
#include "platform/linux/text/ShownText.h"

namespace tessel {

IcuTextServices::IcuTextServices(const std::string& locale, const std::map<std::string_view, std::string_view>& tables)
    : locale_(locale), tables_(locale, tables), numbers_(locale), sizes_(locale), dates_(locale), names_(locale)
{
}

std::string IcuTextServices::localized(std::string_view key) const
{
    return tables_.text(key);
}

std::string IcuTextServices::localizedCount(std::string_view key, std::int64_t count) const
{
    constexpr std::string_view kPlaceholder = "%d";
    auto text = tables_.text(key, static_cast<double>(count));
    if (const auto place = text.find(kPlaceholder); place != std::string::npos)
        text.replace(place, kPlaceholder.size(), numbers_.text(count));
    return text;
}

std::string IcuTextServices::localizedAmount(std::string_view key, double number, std::string_view amount) const
{
    constexpr std::string_view kPlaceholder = "%2$@";
    auto text = tables_.text(key, number);
    if (const auto place = text.find(kPlaceholder); place != std::string::npos)
        text.replace(place, kPlaceholder.size(), amount);
    return text;
}

std::string IcuTextServices::byteCountNumber(std::uint64_t bytes, ByteCountStyle style) const
{
    return bytes == 0 ? localized("Zero") : sizes_.number(bytes, style);
}

std::string IcuTextServices::byteCount(std::uint64_t bytes, ByteCountStyle style) const
{
    return bytes == 0 ? localized("Zero KB") : sizes_.text(bytes, style);
}

std::string IcuTextServices::dateAndTime(Date date, DateStyle style) const
{
    return dates_.text(date, style);
}

std::string IcuTextServices::displayName(std::string_view fileName) const
{
    return displayText(fileName);
}

bool IcuTextServices::containsCharacter(std::string_view text, CharacterClass characters) const
{
    return textContainsCharacter(text, characters);
}

std::string IcuTextServices::trimmed(std::string_view text) const
{
    return std::string(trimmedText(text));
}

std::strong_ordering IcuTextServices::compareNames(std::string_view left, std::string_view right) const
{
    return names_.compare(left, right);
}

std::vector<std::uint32_t> IcuTextServices::orderOfNames(std::span<const std::string_view> names) const
{
    return names_.firstOf(names, names.size());
}

std::vector<std::uint32_t> IcuTextServices::firstOfNames(std::span<const std::string_view> names,
                                                         std::size_t count) const
{
    return names_.firstOf(names, count);
}

std::string IcuTextServices::searchFolded(std::string_view text) const
{
    return searchFoldedText(text);
}

bool IcuTextServices::equalIgnoringCase(std::string_view left, std::string_view right) const
{
    return equalTextsIgnoringCase(left, right, locale_);
}

} // namespace tessel
