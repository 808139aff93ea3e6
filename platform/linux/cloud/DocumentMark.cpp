#include "platform/linux/cloud/DocumentMark.h"

#include "platform/linux/files/CopyContent.h"
#include "platform/linux/files/ExtendedAttributes.h"
#include "platform/linux/files/Uninterrupted.h"

#include <sys/xattr.h>

#include <array>
#include <cerrno>
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

std::optional<DocumentMark> parsedMark(std::string_view text)
{
    DocumentMark mark;
    if (!readNumber(text, mark.identifier) || mark.identifier == 0)
        return std::nullopt;
    if (!readNumber(text, mark.file.inode) || !readNumber(text, mark.file.birth))
        mark.file = {};
    return mark;
}

std::string textOf(const DocumentMark& mark)
{
    return std::to_string(mark.identifier) + ' ' + std::to_string(mark.file.inode) + ' ' +
           std::to_string(mark.file.birth);
}

std::optional<DocumentMark> readDocumentMark(int file)
{
    std::array<char, 128> text{}; // longer than any mark
    const auto size = uninterrupted([&] { return ::fgetxattr(file, kDocumentAttribute, text.data(), text.size()); });
    return size > 0 ? parsedMark({text.data(), static_cast<std::size_t>(size)}) : std::nullopt;
}

} // namespace

Result<std::optional<DocumentMark>> readDocumentMark(const URL& file)
{
    const auto attribute = extendedAttribute(file, kDocumentAttribute);
    if (!attribute)
        return attribute.error();
    return *attribute ? parsedMark(**attribute) : std::nullopt;
}

bool continueDocument(int oldFile, int newFile)
{
    if (!copyAttributes(oldFile, newFile))
        return false;
    const auto mark = readDocumentMark(newFile);
    const auto identity = fileIdentity(newFile);
    if (!mark || !identity || fileIdentity(oldFile) != mark->file)
        return true;
    const auto text = textOf({mark->identifier, *identity});
    const auto set = [&] { return ::fsetxattr(newFile, kDocumentAttribute, text.data(), text.size(), 0); };
    return uninterrupted(set) == 0 || errno == ENOTSUP;
}

void continueMark(const URL& oldFile, const URL& newFile)
{
    const auto mark = readDocumentMark(oldFile);
    if (!mark || !*mark || fileIdentity(oldFile.path()) != (*mark)->file)
        return;
    if (const auto identity = fileIdentity(newFile.path()))
        (void)markDocument(newFile, {(*mark)->identifier, *identity});
}

bool markDocument(const URL& file, const DocumentMark& mark)
{
    if (const auto known = readDocumentMark(file); known && *known == mark)
        return true;
    (void)setExtendedAttribute(file, kDocumentAttribute, textOf(mark));
    return false;
}

} // namespace tessel
