#include "platform/linux/files/ItemStamp.h"

#include "platform/linux/files/Uninterrupted.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace tessel {

namespace {

std::optional<ItemStamp> stampAt(int folder, const char* path, int flags)
{
    struct stat status = {};
    if (uninterrupted([&] { return ::fstatat(folder, path, &status, flags); }) != 0)
        return std::nullopt;
    constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
    return ItemStamp{status.st_dev, status.st_ino, status.st_mode, static_cast<std::uint64_t>(status.st_size),
                     status.st_mtim.tv_sec * kNanosecondsPerSecond + status.st_mtim.tv_nsec};
}

} // namespace

std::optional<ItemStamp> stampOf(const URL& url)
{
    return stampAt(AT_FDCWD, url.path().c_str(), AT_SYMLINK_NOFOLLOW);
}

std::optional<ItemStamp> stampOf(int descriptor)
{
    return stampAt(descriptor, "", AT_EMPTY_PATH);
}

} // namespace tessel
