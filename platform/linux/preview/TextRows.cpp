#include "platform/linux/preview/TextRows.h"

#include "platform/linux/text/ControlPictures.h"

#include <algorithm>
#include <cstring>

#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace tessel {

namespace {

using Form = TextEncoding::Form;

constexpr std::int32_t kTab = 4; ///< characters from one tab stop to the next

/// Embeds, overrides or isolates a direction; the marks that only stand for a letter of one are no danger.
bool turnsAround(UChar32 character)
{
    return (character >= 0x202A && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
}

UChar32 shownCharacter(UChar32 character)
{
    const bool isHarmful = turnsAround(character) || U_IS_UNICODE_NONCHAR(character) || U_IS_SURROGATE(character);
    return isHarmful ? kReplacement : withoutControl(character);
}

bool isPlain(std::string_view bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return byte >= ' ' && byte < 0x7F; });
}

std::string shownText(const icu::UnicodeString& text)
{
    icu::UnicodeString shown;
    std::int32_t column = 0;
    for (std::int32_t index = 0; index < text.length(); index = text.moveIndex32(index, 1)) {
        const auto character = text.char32At(index);
        const auto wide = character == '\t' ? kTab - column % kTab : 1;
        column += wide;
        if (character != '\t')
            shown.append(shownCharacter(character));
        else
            for (std::int32_t blank = 0; blank < wide; ++blank)
                shown.append(u' ');
    }
    std::string bytes;
    shown.toUTF8String(bytes);
    return bytes;
}

} // namespace

TextRows::TextRows(const TextEncoding& encoding) : encoding_(encoding), converter_(nullptr, &ucnv_close)
{
    UErrorCode status = U_ZERO_ERROR;
    converter_.reset(ucnv_open(encoding.converter.c_str(), &status));
}

TextRows::Row TextRows::next(std::string_view bytes, bool isEnd) const
{
    return encoding_.unit() == 1 ? nextOfBytes(bytes, isEnd) : nextOfUnits(bytes, isEnd);
}

TextRows::Row TextRows::nextOfBytes(std::string_view bytes, bool isEnd) const
{
    const auto window = bytes.substr(0, kLongestRow + 1);
    const auto* const lineFeed = static_cast<const char*>(std::memchr(window.data(), '\n', window.size()));
    const auto before = lineFeed ? static_cast<std::size_t>(lineFeed - window.data()) : window.size();
    if (const auto* const found = static_cast<const char*>(std::memchr(window.data(), '\r', before))) {
        const auto length = static_cast<std::size_t>(found - window.data());
        if (length + 1 == bytes.size() && !isEnd)
            return {};
        const bool isPair = length + 1 < bytes.size() && bytes[length + 1] == '\n';
        return {length, length + (isPair ? 2 : 1), true};
    }
    if (lineFeed)
        return {before, before + 1, true};
    if (bytes.size() > kLongestRow) {
        const auto length = placeToCut(bytes.substr(0, kLongestRow));
        return {length, length, false};
    }
    return isEnd ? Row{bytes.size(), bytes.size(), true} : Row{};
}

TextRows::Row TextRows::nextOfUnits(std::string_view bytes, bool isEnd) const
{
    const auto unit = encoding_.unit();
    std::size_t length = 0;
    for (; length + unit <= bytes.size() && length <= kLongestRow; length += unit) {
        const auto code = unitAt(bytes, length);
        if (code == '\n')
            return {length, length + unit, true};
        if (code != '\r')
            continue;
        const bool isNextThere = length + 2 * unit <= bytes.size();
        if (!isNextThere && !isEnd)
            return {};
        const bool isPair = isNextThere && unitAt(bytes, length + unit) == '\n';
        return {length, length + unit * (isPair ? 2 : 1), true};
    }
    if (length > kLongestRow) {
        const bool isCut = unit == 2 && U16_IS_LEAD(unitAt(bytes, kLongestRow - unit));
        length = isCut ? kLongestRow - unit : kLongestRow;
        return {length, length, false};
    }
    return isEnd ? Row{length, bytes.size(), true} : Row{};
}

char32_t TextRows::unitAt(std::string_view bytes, std::size_t offset) const
{
    const auto unit = encoding_.unit();
    char32_t code = 0;
    for (std::size_t index = 0; index < unit; ++index) {
        const auto place = encoding_.isBigEndian ? index : unit - 1 - index;
        code = (code << 8U) | static_cast<unsigned char>(bytes[offset + place]);
    }
    return code;
}

/// Behind a blank, if there is one towards the end, else between two characters.
std::size_t TextRows::placeToCut(std::string_view bytes) const
{
    if (encoding_.form != Form::MultiByte)
        if (const auto blank = bytes.rfind(' '); blank != std::string_view::npos && blank >= bytes.size() * 3 / 4)
            return blank + 1;
    return characterEnd(bytes);
}

/// Where the last character that is whole ends; the end where nothing is like a character.
std::size_t TextRows::characterEnd(std::string_view bytes) const
{
    if (encoding_.form == Form::UTF8) {
        auto end = bytes.size();
        for (int back = 0; back < 3 && end > 1 && (bytes[end - 1] & 0xC0) == 0x80; ++back)
            --end;
        return (bytes[end - 1] & 0xC0) == 0xC0 && end > 1 ? end - 1 : bytes.size();
    }
    if (encoding_.form == Form::SingleByte || !converter_)
        return bytes.size();
    const char* source = bytes.data();
    const char* const end = bytes.data() + bytes.size();
    const char* last = source;
    UErrorCode status = U_ZERO_ERROR;
    ucnv_reset(converter_.get());
    while (source < end && status != U_TRUNCATED_CHAR_FOUND) {
        last = source;
        status = U_ZERO_ERROR;
        ucnv_getNextUChar(converter_.get(), &source, end, &status);
    }
    ucnv_reset(converter_.get());
    const bool isWhole = status != U_TRUNCATED_CHAR_FOUND || last == bytes.data();
    return isWhole ? bytes.size() : static_cast<std::size_t>(last - bytes.data());
}

std::string TextRows::shown(std::string_view bytes) const
{
    if (encoding_.unit() == 1 && isPlain(bytes))
        return std::string(bytes);
    const auto size = static_cast<std::int32_t>(bytes.size());
    if (encoding_.form == Form::UTF8)
        return shownText(icu::UnicodeString::fromUTF8({bytes.data(), size}));
    UErrorCode status = U_ZERO_ERROR;
    return shownText(icu::UnicodeString(bytes.data(), size, converter_.get(), status));
}

} // namespace tessel
