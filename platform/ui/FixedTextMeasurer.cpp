#include "platform/ui/TextMeasurer.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace tessel {

namespace {

constexpr double kAdvance = 0.5; ///< a character's width for each point of the font's size

/// In UTF-8 each character has one byte that continues no other.
std::size_t characters(std::string_view text)
{
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }));
}

/// Adds the lengths of the lines that one paragraph takes when `columns` characters fit into a line. A word that is
/// longer than a line is cut.
void breakParagraph(std::string_view paragraph, std::size_t columns, std::vector<std::size_t>& lines)
{
    std::size_t line = 0;
    while (!paragraph.empty()) {
        const auto end = std::min(paragraph.find(' '), paragraph.size());
        auto word = characters(paragraph.substr(0, end));
        paragraph.remove_prefix(std::min(end + 1, paragraph.size()));
        if (line > 0 && line + 1 + word > columns)
            lines.push_back(std::exchange(line, 0));
        for (; word > columns; word -= columns)
            lines.push_back(columns);
        line += (line > 0 ? 1 : 0) + word;
    }
    lines.push_back(line);
}

} // namespace

FontMetrics FixedTextMeasurer::metrics(const Font& font) const
{
    return {font.size * 0.95, font.size * 0.25, font.size * 0.7, font.size * 1.2};
}

Size FixedTextMeasurer::measure(std::string_view text, const Font& font, double width, std::size_t most) const
{
    if (text.empty())
        return {};
    const auto advance = font.size * kAdvance;
    const auto columns = static_cast<std::size_t>(std::max(1.0, width / advance));
    std::vector<std::size_t> lines;
    while (true) {
        const auto end = std::min(text.find('\n'), text.size());
        breakParagraph(text.substr(0, end), columns, lines);
        if (end == text.size())
            break;
        text.remove_prefix(end + 1);
    }
    if (most > 0 && lines.size() > most)
        lines.resize(most);
    return {static_cast<double>(*std::ranges::max_element(lines)) * advance,
            static_cast<double>(lines.size()) * metrics(font).lineHeight};
}

} // namespace tessel
