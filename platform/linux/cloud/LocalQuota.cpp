#include "platform/linux/cloud/LocalQuota.h"

#include "platform/cloud/CloudService.h"
#include "platform/linux/base/ErrnoError.h"

#include <sys/statvfs.h>

#include <cerrno>

namespace tessel {

Result<std::optional<std::uint64_t>> LocalQuota::freeBytes()
{
    const auto container = cloud_.defaultContainer();
    const auto folder = container ? container->documentsURL : home_;
    struct statvfs status = {};
    if (::statvfs(folder.path().c_str(), &status) != 0)
        return errnoError(errno, folder);
    return std::optional(static_cast<std::uint64_t>(status.f_bavail) * status.f_frsize);
}

} // namespace tessel
