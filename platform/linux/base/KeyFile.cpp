#include "platform/linux/base/KeyFile.h"

#include <algorithm>

namespace tessel {

namespace {

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view kBlanks = " \t\r";
    const auto first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// What a backslash and the character behind it mean; both of them where that is nothing.
void appendEscaped(std::string& text, char character)
{
    constexpr std::string_view kLetters = "sntr\\";
    constexpr std::string_view kMeanings = " \n\t\r\\";
    const auto known = kLetters.find(character);
    if (known == std::string_view::npos)
        text.append({'\\', character});
    else
        text.push_back(kMeanings[known]);
}

} // namespace

KeyFile::KeyFile(std::string_view text)
{
    Group* group = nullptr;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        const auto line = trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        const auto equals = line.find('=');
        if (line.empty() || line.front() == '#' || line.find('\0') != std::string_view::npos)
            continue;
        if (line.front() == '[' && line.back() == ']')
            group = &groups_[line.substr(1, line.size() - 2)];
        else if (group && equals != std::string_view::npos)
            group->emplace_back(trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1)));
    }
}

const KeyFile::Group& KeyFile::group(std::string_view name) const
{
    static const Group kNone;
    const auto found = groups_.find(name);
    return found == groups_.end() ? kNone : found->second;
}

std::optional<std::string_view> KeyFile::value(std::string_view groupName, std::string_view key) const
{
    const auto& pairs = group(groupName);
    const auto found = std::find_if(pairs.rbegin(), pairs.rend(), [&](const auto& pair) { return pair.first == key; });
    return found == pairs.rend() ? std::nullopt : std::optional(found->second);
}

std::string KeyFile::text(std::string_view value)
{
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i)
        if (value[i] == '\\' && i + 1 < value.size())
            appendEscaped(text, value[++i]);
        else
            text.push_back(value[i]);
    return text;
}

std::vector<std::string> KeyFile::list(std::string_view value)
{
    std::vector<std::string> parts(1);
    for (std::size_t i = 0; i < value.size(); ++i)
        if (value[i] == ';')
            parts.emplace_back();
        else if (value[i] != '\\' || i + 1 == value.size())
            parts.back().push_back(value[i]);
        else if (value[++i] == ';')
            parts.back().push_back(';');
        else
            appendEscaped(parts.back(), value[i]);
    std::erase(parts, std::string());
    return parts;
}

} // namespace tessel
