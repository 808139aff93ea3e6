#include "platform/linux/cloud/DocumentMark.h"

#include "platform/linux/files/ExtendedAttributes.h"

#include <charconv>
#include <string>
#include <string_view>

namespace tessel {

namespace {

template <typename Number>
bool readNumber(std::string_view& text, Number& number)
{
    if (text.starts_with(' '))
        text.remove_prefix(1);
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<std::size_t>(parsed.ptr - text.data()));
    return parsed.ec == std::errc() && (text.empty() || text.front() == ' ');
}

} // namespace

Result<std::optional<DocumentMark>> readDocumentMark(const URL& file)
{
    const auto attribute = extendedAttribute(file, kDocumentAttribute);
    if (!attribute)
        return attribute.error();
    std::string_view text = *attribute ? std::string_view(**attribute) : "";
    DocumentMark mark;
    if (!readNumber(text, mark.identifier) || mark.identifier == 0)
        return std::optional<DocumentMark>();
    if (!readNumber(text, mark.file.inode) || !readNumber(text, mark.file.birth))
        mark.file = {};
    return std::optional(mark);
}

void markDocument(const URL& file, const DocumentMark& mark)
{
    if (const auto known = readDocumentMark(file); known && *known == mark)
        return;
    const auto text =
        std::to_string(mark.identifier) + ' ' + std::to_string(mark.file.inode) + ' ' + std::to_string(mark.file.birth);
    (void)setExtendedAttribute(file, kDocumentAttribute, text);
}

} // namespace tessel
