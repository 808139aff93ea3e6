#include "platform/linux/search/IndexedText.h"

#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/preview/TextEncoding.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>

#include <unicode/unistr.h>

namespace tessel {

namespace {

constexpr std::size_t kMostBytes = std::size_t{256} * 1024;

/// @returns empty for what is no regular file
std::string beginningOf(const FileDescriptor& file)
{
    struct stat status = {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    std::string bytes(std::min<std::size_t>(kMostBytes, static_cast<std::size_t>(status.st_size)), '\0');
    std::size_t length = 0;
    while (length < bytes.size()) {
        const auto read = ::pread(file.get(), bytes.data() + length, bytes.size() - length, static_cast<off_t>(length));
        if (read <= 0)
            break;
        length += static_cast<std::size_t>(read);
    }
    bytes.resize(length);
    return bytes;
}

} // namespace

std::string textToIndex(const URL& url)
{
    const FileDescriptor file(::open(url.path().c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    const auto bytes = beginningOf(file);
    const auto encoding = encodingOfText(bytes, bytes.size() < kMostBytes);
    if (bytes.empty() || !encoding)
        return {};
    const auto length = static_cast<std::int32_t>(bytes.size() - encoding->markLength);
    const icu::UnicodeString text(bytes.data() + encoding->markLength, length, encoding->converter.c_str());
    std::string decoded;
    text.toUTF8String(decoded);
    std::ranges::replace(decoded, '\0', ' ');
    return decoded;
}

} // namespace tessel
