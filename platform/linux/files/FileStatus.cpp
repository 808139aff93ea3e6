#include "platform/linux/files/FileStatus.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>

namespace tessel {

namespace {

FileKind kindOf(unsigned mode)
{
    switch (mode & S_IFMT) {
    case S_IFREG:
        return FileKind::RegularFile;
    case S_IFDIR:
        return FileKind::Directory;
    case S_IFLNK:
        return FileKind::SymbolicLink;
    default:
        return FileKind::Other;
    }
}

// Some file systems keep dates beyond the years 1677 to 2262, which is all that 64 bits of nanoseconds hold.
Date dateOf(const statx_timestamp& time)
{
    constexpr std::int64_t kMaximumSeconds = 9'223'372'035;
    const auto seconds = std::clamp<std::int64_t>(time.tv_sec, -kMaximumSeconds, kMaximumSeconds);
    return Date{seconds * 1'000'000'000 + time.tv_nsec};
}

} // namespace

std::optional<FileAttributes> fileAttributesAt(int folder, const char* path)
{
    struct statx status = {};
    constexpr unsigned kWanted = STATX_TYPE | STATX_SIZE | STATX_MTIME | STATX_BTIME;
    if (::statx(folder, path, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, kWanted, &status) != 0)
        return std::nullopt;
    FileAttributes attributes;
    attributes.kind = kindOf(status.stx_mode);
    attributes.size = status.stx_size;
    attributes.modificationDate = dateOf(status.stx_mtime);
    if (status.stx_mask & STATX_BTIME)
        attributes.creationDate = dateOf(status.stx_btime);
    return attributes;
}

} // namespace tessel
