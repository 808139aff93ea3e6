#include "platform/linux/preview/TextEncoding.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>

#include <unicode/ucnv.h>
#include <unicode/ucsdet.h>
#include <unicode/ustring.h>

namespace tessel {

namespace {

using Form = TextEncoding::Form;

constexpr std::size_t kMostGuessedFrom = std::size_t{16} * 1024;
constexpr std::int32_t kLeastConfidence = 10;   ///< of 100
constexpr std::size_t kMostControlsOfUTF8 = 20; ///< one of so many bytes, as in the output of terminals

struct Mark {
    std::string_view bytes;
    const char* converter;
    Form form;
    bool isBigEndian;
};

// A mark that begins with another one comes first.
constexpr Mark kMarks[] = {
    {std::string_view("\xFF\xFE\0\0", 4), "UTF-32LE", Form::UTF32, false},
    {std::string_view("\0\0\xFE\xFF", 4), "UTF-32BE", Form::UTF32, true},
    {std::string_view("\xEF\xBB\xBF", 3), "UTF-8", Form::UTF8, false},
    {std::string_view("\xFF\xFE", 2), "UTF-16LE", Form::UTF16, false},
    {std::string_view("\xFE\xFF", 2), "UTF-16BE", Form::UTF16, true},
};

bool isStrangeInText(char byte)
{
    const auto code = static_cast<unsigned char>(byte);
    return (code < 0x20 && (code < 0x08 || code > 0x0D) && code != 0x1B) || code == 0x7F;
}

std::optional<TextEncoding> encodingByMark(std::string_view text)
{
    for (const auto& mark : kMarks)
        if (text.starts_with(mark.bytes))
            return TextEncoding{mark.converter, mark.form, mark.isBigEndian, mark.bytes.size()};
    return std::nullopt;
}

/// In wide forms without a mark most zeros are at the same place of each four bytes, as long as letters are Latin.
std::optional<TextEncoding> encodingByZeros(std::string_view text)
{
    std::array<std::size_t, 4> zeros{};
    for (std::size_t index = 0; index < text.size(); ++index)
        zeros.at(index % 4) += text[index] == 0;
    const auto whole = text.size() / 4;
    const auto most = [&](std::size_t place) { return zeros.at(place) * 10 >= whole * 7; };
    const auto few = [&](std::size_t place) { return zeros.at(place) * 50 <= whole; };
    if (whole == 0)
        return std::nullopt;
    if (few(0) && most(2) && most(3))
        return TextEncoding{"UTF-32LE", Form::UTF32, false, 0};
    if (few(3) && most(0) && most(1))
        return TextEncoding{"UTF-32BE", Form::UTF32, true, 0};
    if (few(0) && few(2) && most(1) && most(3))
        return TextEncoding{"UTF-16LE", Form::UTF16, false, 0};
    if (few(1) && few(3) && most(0) && most(2))
        return TextEncoding{"UTF-16BE", Form::UTF16, true, 0};
    return std::nullopt;
}

/// Without the bytes of a last character that is not whole.
std::string_view withoutCutCharacter(std::string_view text)
{
    for (std::size_t back = 1; back <= std::min<std::size_t>(3, text.size()); ++back) {
        const auto byte = static_cast<unsigned char>(text[text.size() - back]);
        if (byte < 0x80)
            return text;
        if (byte >= 0xC0)
            return text.substr(0, text.size() - back);
    }
    return text;
}

bool isUTF8(std::string_view text)
{
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8(nullptr, 0, nullptr, text.data(), static_cast<std::int32_t>(text.size()), &status);
    return status != U_INVALID_CHAR_FOUND;
}

/// What tells encodings apart is what is not ASCII: the bytes from the first of it on.
std::string_view tellingPart(std::string_view text)
{
    const auto first = std::find_if(text.begin(), text.end(), [](char byte) { return (byte & 0x80) != 0; });
    const auto offset = static_cast<std::size_t>(first - text.begin());
    const auto line = text.substr(0, offset).rfind('\n');
    return text.substr(line == std::string_view::npos ? 0 : line + 1, kMostGuessedFrom);
}

std::optional<TextEncoding> encodingOfConverter(const char* name)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(ucnv_open(name, &status), &ucnv_close);
    if (U_FAILURE(status))
        return std::nullopt;
    const bool isSingleByte = ucnv_getMaxCharSize(converter.get()) == 1;
    return TextEncoding{name, isSingleByte ? Form::SingleByte : Form::MultiByte, false, 0};
}

std::optional<TextEncoding> guessedEncoding(std::string_view text)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UCharsetDetector, decltype(&ucsdet_close)> detector(ucsdet_open(&status), &ucsdet_close);
    ucsdet_setText(detector.get(), text.data(), static_cast<std::int32_t>(text.size()), &status);
    std::int32_t count = 0;
    const auto* const matches = ucsdet_detectAll(detector.get(), &count, &status);
    for (std::int32_t index = 0; U_SUCCESS(status) && index < count; ++index) {
        const std::string name = ucsdet_getName(matches[index], &status);
        if (ucsdet_getConfidence(matches[index], &status) < kLeastConfidence)
            break;
        if (!name.starts_with("UTF-") && !name.starts_with("IBM420") && !name.starts_with("IBM424"))
            return encodingOfConverter(name.c_str());
    }
    return encodingOfConverter("windows-1252");
}

} // namespace

std::size_t TextEncoding::unit() const
{
    return form == Form::UTF32 ? 4 : form == Form::UTF16 ? 2 : 1;
}

std::optional<TextEncoding> encodingOfText(std::string_view beginning, bool isWhole)
{
    if (auto marked = encodingByMark(beginning))
        return marked;
    const auto text = isWhole ? beginning : withoutCutCharacter(beginning);
    if (text.find('\0') != std::string_view::npos)
        return encodingByZeros(text);
    const auto strange = static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isStrangeInText));
    if (isUTF8(text))
        return strange * kMostControlsOfUTF8 <= text.size() ? std::optional(TextEncoding{"UTF-8", Form::UTF8, false, 0})
                                                            : std::nullopt;
    return strange == 0 ? guessedEncoding(tellingPart(text)) : std::nullopt;
}

} // namespace tessel
