#include "platform/linux/files/CopyContent.h"

#include "platform/linux/files/Uninterrupted.h"
#include "platform/linux/files/WriteAll.h"

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <string>
#include <string_view>

namespace tessel {

namespace {

constexpr std::size_t kBlock = 256 * 1024;
constexpr std::string_view kUserAttribute = "user.";

// What a call that fills a buffer and tells the length of what it would hold has to say; empty where the file system
// keeps no attributes or the item has none.
template <typename Call>
bool readAll(const Call& call, std::string& content)
{
    while (true) {
        const auto size = uninterrupted([&] { return call(nullptr, 0); });
        if (size < 0)
            return errno == ENOTSUP;
        content.resize(static_cast<std::size_t>(size));
        if (size == 0)
            return true;
        const auto read = uninterrupted([&] { return call(content.data(), content.size()); });
        if (read >= 0) {
            content.resize(static_cast<std::size_t>(read));
            return true;
        }
        if (errno != ERANGE)
            return false;
    }
}

bool copyAttribute(int from, int to, const char* name)
{
    std::string value;
    if (!readAll([&](char* buffer, std::size_t size) { return ::fgetxattr(from, name, buffer, size); }, value))
        return errno == ENODATA;
    return uninterrupted([&] { return ::fsetxattr(to, name, value.data(), value.size(), 0); }) == 0 || errno == ENOTSUP;
}

} // namespace

bool copyContent(int from, int to)
{
    return copyContent(from, to, [](std::uint64_t) { return true; });
}

bool copyContent(int from, int to, const std::function<bool(std::uint64_t)>& wantsMore)
{
    std::string block(kBlock, '\0');
    for (std::uint64_t copied = 0;;) {
        const auto length = uninterrupted([&] { return ::read(from, block.data(), block.size()); });
        if (length <= 0)
            return length == 0;
        if (!writeAll(to, std::string_view(block).substr(0, static_cast<std::size_t>(length))))
            return false;
        copied += static_cast<std::uint64_t>(length);
        if (!wantsMore(copied)) {
            errno = ECANCELED;
            return false;
        }
    }
}

bool copyAttributes(int from, int to)
{
    std::string names;
    if (!readAll([&](char* buffer, std::size_t size) { return ::flistxattr(from, buffer, size); }, names))
        return false;
    for (std::size_t start = 0; start < names.size(); start = names.find('\0', start) + 1)
        if (names.compare(start, kUserAttribute.size(), kUserAttribute) == 0 &&
            !copyAttribute(from, to, names.c_str() + start))
            return false;
    return true;
}

bool copyModeAndTimes(int from, int to)
{
    struct stat status = {};
    if (uninterrupted([&] { return ::fstat(from, &status); }) != 0)
        return false;
    const timespec times[] = {status.st_atim, status.st_mtim};
    return uninterrupted([&] { return ::fchmod(to, status.st_mode & 07777); }) == 0 &&
           uninterrupted([&] { return ::futimens(to, times); }) == 0;
}

} // namespace tessel
