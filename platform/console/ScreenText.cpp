#include "platform/console/ScreenText.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace tessel {

namespace {

bool canRepeat(std::string_view key)
{
    constexpr std::array<std::string_view, 8> kRepeatedKeys = {"left", "right", "row",  "selected",
                                                               "text", "field", "info", "button"};
    return std::ranges::find(kRepeatedKeys, key) != kRepeatedKeys.end();
}

std::string jsonString(std::string_view text)
{
    std::string result = "\"";
    for (const char byte : text) {
        if (byte == '"' || byte == '\\') {
            result += {'\\', byte};
        } else if (static_cast<unsigned char>(byte) < 0x20) {
            char escaped[7];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(byte));
            result += escaped;
        } else {
            result += byte;
        }
    }
    return result + '"';
}

/// The values of one key, which stand next to each other on a screen.
std::string jsonArray(Screen::const_iterator first, Screen::const_iterator end)
{
    std::string result = "[";
    for (auto element = first; element != end; ++element) {
        if (element != first)
            result += ", ";
        result += jsonString(element->text());
    }
    return result + "]";
}

/// The values of a key that has one line.
std::string joinedText(Screen::const_iterator first, Screen::const_iterator end)
{
    std::string result = first->text();
    while (++first != end)
        result += " | " + first->text();
    return result;
}

} // namespace

std::string screenLines(const Screen& screen)
{
    std::string lines;
    for (std::size_t index = 0; index < screen.size(); ++index) {
        if (!continuesLine(screen, index))
            lines.append(index > 0 ? "\n" : "").append(screen[index].key).append(": ");
        else
            lines.append(" | ");
        lines.append(screen[index].text());
    }
    return screen.empty() ? "" : lines + "\n";
}

std::string screenJSON(const Screen& screen)
{
    std::string object = "{";
    for (auto first = screen.begin(); first != screen.end();) {
        const auto end = std::find_if(first, screen.end(), [&](const auto& next) { return next.key != first->key; });
        if (first != screen.begin())
            object += ", ";
        object += jsonString(first->key) + ": ";
        object += canRepeat(first->key) ? jsonArray(first, end) : jsonString(joinedText(first, end));
        first = end;
    }
    return object + "}\n";
}

} // namespace tessel
