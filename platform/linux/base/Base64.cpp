#include "platform/linux/base/Base64.h"

#include <cstdint>

namespace tessel {

namespace {
constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
}

std::string base64Encoded(std::string_view bytes)
{
    std::string text;
    for (; !bytes.empty(); bytes.remove_prefix(bytes.size() < 3 ? bytes.size() : 3)) {
        std::uint32_t group = 0;
        for (std::size_t i = 0; i < 3; ++i)
            group = group << 8 | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U);
        for (std::size_t i = 0; i < 4; ++i)
            text.push_back(i <= bytes.size() ? kDigits[group >> (18 - 6 * i) & 63] : '=');
    }
    return text;
}

std::optional<std::string> base64Decoded(std::string_view text)
{
    std::string bytes;
    std::uint32_t group = 0;
    unsigned bits = 0;
    for (const char character : text.substr(0, text.find('='))) {
        const auto digit = kDigits.find(character);
        if (digit == std::string_view::npos)
            return std::nullopt;
        group = group << 6 | static_cast<std::uint32_t>(digit);
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            bytes.push_back(static_cast<char>(group >> bits & 255));
        }
    }
    // Encoding again catches what is left: padding, length and stray bits.
    return base64Encoded(bytes) == text ? std::optional(bytes) : std::nullopt;
}

} // namespace tessel
