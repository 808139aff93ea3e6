#include "platform/linux/text/PseudoTexts.h"

#include <array>

namespace tessel {

namespace {

constexpr std::string_view kPlain = "AEIOUYaeiouyCcNnSsZz";
constexpr std::array<std::string_view, 20> kAccented = {"Å", "É", "Î", "Ö", "Û", "Ý", "å", "é", "î", "ö",
                                                        "û", "ý", "Ç", "ç", "Ñ", "ñ", "Š", "š", "Ž", "ž"};

/// How long the placeholder is that the text begins with: "%@", "%d", "%1$@"; 0 for any other text.
std::size_t placeholderLength(std::string_view text)
{
    if (!text.starts_with('%'))
        return 0;
    const auto end = text.find_first_of("@d", 1);
    const auto inside = end == std::string_view::npos ? text : text.substr(1, end - 1);
    const bool isOne = inside.empty() || (inside.size() == 2 && inside[1] == '$');
    return isOne && end != std::string_view::npos ? end + 1 : 0;
}

} // namespace

std::string pseudoText(std::string_view english)
{
    std::string text = "[";
    std::size_t letters = 0;
    for (std::size_t at = 0; at < english.size();) {
        if (const auto length = placeholderLength(english.substr(at)); length > 0) {
            text += english.substr(at, length);
            at += length;
            continue;
        }
        const auto found = kPlain.find(english[at]);
        if (found == std::string_view::npos)
            text += english[at];
        else
            text += kAccented[found];
        ++letters;
        ++at;
    }
    return text.append((letters + 1) / 2, '~') + "]";
}

} // namespace tessel
