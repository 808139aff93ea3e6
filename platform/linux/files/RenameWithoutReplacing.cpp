#include "platform/linux/files/RenameWithoutReplacing.h"

#include "platform/linux/files/Uninterrupted.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

namespace tessel {

namespace {

bool exists(const URL& url)
{
    return uninterrupted([&] { return ::faccessat(AT_FDCWD, url.path().c_str(), F_OK, AT_SYMLINK_NOFOLLOW); }) == 0;
}

} // namespace

bool renameWithoutReplacing(const URL& from, const URL& to)
{
    const auto* source = from.path().c_str();
    const auto* destination = to.path().c_str();
    if (uninterrupted([&] { return ::renameat2(AT_FDCWD, source, AT_FDCWD, destination, RENAME_NOREPLACE); }) == 0)
        return true;
    if (errno != EINVAL || from.contains(to))
        return false;
    if (exists(to)) {
        errno = EEXIST;
        return false;
    }
    return uninterrupted([&] { return std::rename(source, destination); }) == 0;
}

bool renameToFreeNameLike(const URL& from, const URL& wanted)
{
    constexpr int kMaximumNumber = 1000;
    const std::string name(wanted.lastPathComponent());
    const auto extension = wanted.pathExtension();
    const auto stem = name.substr(0, name.size() - (extension.empty() ? 0 : extension.size() + 1));
    bool isRenamed = renameWithoutReplacing(from, wanted);
    for (int n = 2; !isRenamed && errno == EEXIST && n <= kMaximumNumber; ++n) {
        const auto numbered = stem + ' ' + std::to_string(n) + name.substr(stem.size());
        isRenamed = renameWithoutReplacing(from, wanted.deletingLastPathComponent().appending(numbered));
    }
    return isRenamed;
}

} // namespace tessel
