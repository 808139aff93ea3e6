#include "platform/linux/text/ShownText.h"

#include "platform/linux/text/ControlPictures.h"

#include "platform/linux/text/AsciiNameKeys.h"

#include <algorithm>

#include <unicode/normalizer2.h>
#include <unicode/unistr.h>
#include <unicode/unorm.h>
#include <unicode/ustring.h>

namespace tessel {

namespace {

icu::UnicodeString decoded(std::string_view text)
{
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
}

std::string encoded(const icu::UnicodeString& text)
{
    std::string bytes;
    text.toUTF8String(bytes);
    return bytes;
}

bool isPrintableAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char character) { return character >= ' ' && character < 0x7F; });
}

bool isUtf8(std::string_view text)
{
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8(nullptr, 0, nullptr, text.data(), static_cast<std::int32_t>(text.size()), &status);
    return status != U_INVALID_CHAR_FOUND;
}

/// What stands for a character in one line of text.
UChar32 shown(UChar32 character)
{
    return u_hasBinaryProperty(character, UCHAR_BIDI_CONTROL) ? kReplacement : withoutControl(character);
}

icu::UnicodeString withoutNonspacingMarks(const icu::UnicodeString& text)
{
    icu::UnicodeString result;
    for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1))
        if (const auto character = text.char32At(i); u_charType(character) != U_NON_SPACING_MARK)
            result.append(character);
    return result;
}

std::string lowered(std::string_view ascii)
{
    std::string result(ascii);
    for (char& character : result)
        if (character >= 'A' && character <= 'Z')
            character = static_cast<char>(character | 0x20);
    return result;
}

} // namespace

std::string displayText(std::string_view fileName)
{
    if (isPrintableAscii(fileName))
        return std::string(fileName);
    const auto name = decoded(fileName);
    icu::UnicodeString text;
    for (std::int32_t i = 0; i < name.length(); i = name.moveIndex32(i, 1))
        text.append(shown(name.char32At(i)));
    return encoded(text);
}

std::string searchFoldedText(std::string_view text)
{
    if (isAscii(text))
        return lowered(text);
    UErrorCode status = U_ZERO_ERROR;
    const auto* fold = icu::Normalizer2::getNFKCCasefoldInstance(status);
    const auto* decompose = icu::Normalizer2::getNFDInstance(status);
    const auto* compose = icu::Normalizer2::getNFCInstance(status);
    if (U_FAILURE(status))
        return lowered(text);
    const auto letters = decompose->normalize(fold->normalize(decoded(text), status), status);
    return encoded(compose->normalize(withoutNonspacingMarks(letters), status));
}

bool equalTextsIgnoringCase(std::string_view left, std::string_view right, std::string_view locale)
{
    if (left == right)
        return true;
    if (!isUtf8(left) || !isUtf8(right))
        return false;
    const auto language = locale.substr(0, locale.find('_'));
    const bool turkic = language == "tr" || language == "az";
    const auto options = U_COMPARE_IGNORE_CASE | (turkic ? U_FOLD_CASE_EXCLUDE_SPECIAL_I : U_FOLD_CASE_DEFAULT);
    const auto first = decoded(left), second = decoded(right);
    UErrorCode status = U_ZERO_ERROR;
    return unorm_compare(first.getBuffer(), first.length(), second.getBuffer(), second.length(),
                         static_cast<std::uint32_t>(options), &status) == 0;
}

} // namespace tessel
