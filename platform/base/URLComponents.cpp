#include "platform/base/URLComponents.h"

#include "platform/base/PercentEncoding.h"

#include <algorithm>

namespace tessel {

namespace {

constexpr std::size_t kMaximumLength = 64 * 1024; // bytes

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isScheme(std::string_view text)
{
    return !text.empty() && isLetter(text.front()) && std::ranges::all_of(text, [](char c) {
        return isLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
    });
}

bool standsInNoURL(char character)
{
    const auto byte = static_cast<unsigned char>(character);
    return byte <= 0x20 || byte == 0x7f;
}

/// Cuts the text before the first of these characters.
/// @returns what follows it
std::string_view cutAt(std::string_view& text, std::string_view characters)
{
    const auto at = std::min(text.find_first_of(characters), text.size());
    const auto rest = text.substr(std::min(at + 1, text.size()));
    text = text.substr(0, at);
    return rest;
}

std::optional<std::vector<URLComponents::QueryItem>> queryItemsOf(std::string_view query)
{
    std::vector<URLComponents::QueryItem> items;
    while (!query.empty()) {
        auto part = query;
        query = cutAt(part, "&");
        auto name = part;
        const auto value = cutAt(name, "=");
        const auto decodedName = percentDecoded(name);
        const auto decodedValue = percentDecoded(value);
        if (!decodedName || !decodedValue)
            return std::nullopt;
        items.push_back({*decodedName, name.size() < part.size() ? decodedValue : std::nullopt});
    }
    return items;
}

} // namespace

std::optional<URLComponents> URLComponents::parse(std::string_view text)
{
    if (text.size() > kMaximumLength || std::ranges::any_of(text, standsInNoURL))
        return std::nullopt;
    auto scheme = text;
    auto path = cutAt(scheme, ":");
    if (scheme.size() == text.size() || !isScheme(scheme))
        return std::nullopt;
    static_cast<void>(cutAt(path, "#"));
    const auto query = cutAt(path, "?");
    if (path.starts_with("//"))
        path.remove_prefix(std::min(path.find('/', 2), path.size()));
    auto decodedPath = percentDecoded(path);
    auto items = queryItemsOf(query);
    if (!decodedPath || !items)
        return std::nullopt;
    return URLComponents{std::string(scheme), *std::move(decodedPath), *std::move(items)};
}

} // namespace tessel
