#include "platform/linux/files/SetAside.h"

#include "platform/linux/base/ErrnoError.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace tessel {

namespace {

// Never replaces a file. File systems without RENAME_NOREPLACE are asked first, which leaves a gap for another program
// to use the name; only a damaged copy would be lost in it.
bool renameToFreeName(const std::string& from, const std::string& to)
{
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL)
        return false;
    if (::faccessat(AT_FDCWD, to.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0) {
        errno = EEXIST;
        return false;
    }
    return std::rename(from.c_str(), to.c_str()) == 0;
}

} // namespace

std::optional<Error> setAside(const URL& file)
{
    for (int n = 1;; ++n) {
        if (renameToFreeName(file.path(), file.path() + ".damaged-" + std::to_string(n)) || errno == ENOENT)
            return std::nullopt;
        if (errno != EEXIST)
            return errnoError(errno, file);
    }
}

} // namespace tessel
