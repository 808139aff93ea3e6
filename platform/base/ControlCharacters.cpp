#include "platform/base/ControlCharacters.h"

namespace tessel {

namespace {

/// How many bytes the control character at the start of the text has; none when there is another character. U+0080 to
/// U+009F count, because terminals obey these as well.
constexpr std::size_t controlCharacterLength(std::string_view text)
{
    const auto byte = [text](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    if (byte(0) < 0x20 || byte(0) == 0x7f)
        return 1;
    return text.size() > 1 && byte(0) == 0xc2 && (byte(1) & 0xe0U) == 0x80 ? 2 : 0;
}

void appendHexadecimal(std::string& line, char character)
{
    constexpr std::string_view kDigits = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(character);
    line += {'\\', 'x', kDigits[byte >> 4U], kDigits[byte & 15U]};
}

} // namespace

std::string escapingControlCharacters(std::string_view text)
{
    std::string line;
    line.reserve(text.size());
    while (!text.empty()) {
        const auto controls = controlCharacterLength(text);
        if (text.front() == '\n')
            line += "\\n";
        else if (controls == 0)
            line += text.front();
        else
            for (const char character : text.substr(0, controls))
                appendHexadecimal(line, character);
        text.remove_prefix(controls == 0 ? 1 : controls);
    }
    return line;
}

} // namespace tessel
