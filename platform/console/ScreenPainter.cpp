#include "platform/console/ScreenPainter.h"

#include <algorithm>

namespace tessel {

namespace {

constexpr std::size_t kMostRows = 500; ///< more scroll away before they can be read
constexpr std::size_t kNumberWidth = 5;
constexpr std::size_t kKindWidth = 9;
constexpr std::size_t kAmountWidth = 12;
constexpr std::size_t kNarrowestTitle = 12;

/// In UTF-8 each character has one byte that continues no other.
bool beginsCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

std::size_t width(std::string_view text)
{
    return static_cast<std::size_t>(std::ranges::count_if(text, beginsCharacter));
}

/// The text in exactly `columns` characters: filled up with blanks, or cut.
std::string fitted(std::string text, std::size_t columns)
{
    if (const auto characters = width(text); characters <= columns)
        return text.append(columns - characters, ' ');
    while (width(text) >= columns)
        text.erase(static_cast<std::size_t>(
            std::distance(std::find_if(text.rbegin(), text.rend(), beginsCharacter), text.rend()) - 1));
    return text + "…";
}

std::string valueOf(const Screen& screen, std::string_view key)
{
    const auto found = std::ranges::find(screen, key, &ScreenElement::key);
    return found == screen.end() ? "" : found->text();
}

std::size_t titleWidth(const Screen& screen, std::size_t columns)
{
    std::size_t longest = kNarrowestTitle;
    for (const auto& element : screen)
        if (element.isRow())
            longest = std::max(longest, width(element.name));
    const auto others = kNumberWidth + kKindWidth + kAmountWidth + 4;
    return std::clamp(longest, kNarrowestTitle, std::max(columns, others + kNarrowestTitle) - others);
}

std::string rowLine(const ScreenElement& row, std::size_t number, std::size_t titleColumns, std::size_t columns)
{
    const auto digits = std::to_string(number);
    std::string line(kNumberWidth - std::min(kNumberWidth, digits.size()), ' ');
    line += digits + "  " + fitted(row.name, titleColumns) + "  " + fitted(row.parts.front(), kKindWidth);
    for (std::size_t part = 2; part < row.parts.size(); ++part)
        line += part == 2 ? fitted(row.parts[part], kAmountWidth) : "  " + row.parts[part];
    line.erase(line.find_last_not_of(' ') + 1);
    return (width(line) > columns ? fitted(line, columns) : line) + "\n";
}

} // namespace

std::string ScreenPainter::titleBar(const Screen& screen) const
{
    const auto back = valueOf(screen, "back");
    auto bar = fitted((back.empty() ? " " : " ‹ " + back + "   ") + valueOf(screen, "title"), columns);
    return usesEscapes ? "\x1b[H\x1b[2J\x1b[7m" + bar + "\x1b[0m\n" : "\n" + bar + "\n";
}

std::string ScreenPainter::paint(const Screen& screen) const
{
    auto text = titleBar(screen);
    const auto titleColumns = titleWidth(screen, columns);
    std::size_t rows = 0;
    for (std::size_t index = 0; index < screen.size(); ++index) {
        const auto& element = screen[index];
        if (element.isRow() && ++rows <= kMostRows)
            text += rowLine(element, rows, titleColumns, columns);
        else if (continuesLine(screen, index))
            text.insert(text.size() - 1, " | " + element.text());
        else if (!element.isRow() && element.key != "title" && element.key != "back")
            text += " " + std::string(element.key) + ": " + element.text() + "\n";
    }
    if (rows > kMostRows)
        text += " … and " + std::to_string(rows - kMostRows) + " more\n";
    return text;
}

} // namespace tessel
