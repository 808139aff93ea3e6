#include "platform/base/PercentEncoding.h"

#include <charconv>

namespace tessel {

namespace {

bool isUnreserved(unsigned char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("-._~/!$&'()*+,=:@").find(static_cast<char>(c)) != std::string_view::npos;
}

} // namespace

std::optional<std::string> percentDecoded(std::string_view text)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            result.push_back(text[i]);
            continue;
        }
        const auto digits = text.substr(i + 1, 2);
        unsigned byte = 0;
        const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
        if (digits.size() != 2 || parsed.ptr != digits.data() + 2)
            return std::nullopt;
        result.push_back(static_cast<char>(byte));
        i += 2;
    }
    return result;
}

std::string percentEncodedPath(std::string_view path)
{
    static constexpr std::string_view kHexDigits = "0123456789ABCDEF";
    std::string result;
    for (const char character : path) {
        const auto byte = static_cast<unsigned char>(character);
        if (isUnreserved(byte)) {
            result.push_back(character);
            continue;
        }
        result.push_back('%');
        result.push_back(kHexDigits[byte >> 4]);
        result.push_back(kHexDigits[byte & 15]);
    }
    return result;
}

} // namespace tessel
