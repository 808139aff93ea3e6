#include "platform/linux/files/FileIdentity.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace tessel {

namespace {

constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

// The date may wrap: it is compared, never shown.
std::int64_t birthOf(const struct statx& status)
{
    if (!(status.stx_mask & STATX_BTIME))
        return 0;
    const auto seconds = static_cast<std::uint64_t>(status.stx_btime.tv_sec);
    return static_cast<std::int64_t>(seconds * kNanosecondsPerSecond + status.stx_btime.tv_nsec);
}

std::optional<FileIdentity> identityAt(int folder, const char* path, int flags)
{
    struct statx status = {};
    if (::statx(folder, path, flags | AT_NO_AUTOMOUNT, STATX_TYPE | STATX_INO | STATX_BTIME, &status) != 0)
        return std::nullopt;
    if (!S_ISREG(status.stx_mode) && !S_ISDIR(status.stx_mode)) {
        errno = EINVAL;
        return std::nullopt;
    }
    return FileIdentity{status.stx_ino, birthOf(status)};
}

} // namespace

std::optional<FileIdentity> fileIdentity(const std::string& path)
{
    return identityAt(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW);
}

std::optional<FileIdentity> fileIdentity(int descriptor)
{
    return identityAt(descriptor, "", AT_EMPTY_PATH);
}

} // namespace tessel
