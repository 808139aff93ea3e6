#include "platform/linux/cloud/TagAttribute.h"

#include "platform/linux/base/UTF8.h"
#include "platform/linux/files/ExtendedAttributes.h"

#include <algorithm>

namespace tessel {

namespace {

constexpr std::size_t kMaximumCount = 64;

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view kBlanks(" \t\r\n\0", 5);
    const auto start = text.find_first_not_of(kBlanks);
    return start == std::string_view::npos ? "" : text.substr(start, text.find_last_not_of(kBlanks) - start + 1);
}

} // namespace

Result<std::vector<std::string>> readTagNames(const URL& url)
{
    const auto attribute = extendedAttribute(url, kTagAttribute);
    if (!attribute)
        return attribute.error();
    std::vector<std::string> names;
    const auto text = attribute->value_or("");
    for (std::size_t start = 0; start < text.size() && names.size() < kMaximumCount;) {
        const auto end = std::min(text.find(',', start), text.size());
        const auto name = trimmed(std::string_view(text).substr(start, end - start));
        if (!name.empty() && isValidUTF8(name))
            names.emplace_back(name);
        start = end + 1;
    }
    return names;
}

} // namespace tessel
