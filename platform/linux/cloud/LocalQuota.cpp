#include "platform/linux/cloud/LocalQuota.h"

#include "platform/cloud/CloudService.h"
#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/cloud/AccountSize.h"

#include <sys/statvfs.h>

#include <cerrno>

namespace tessel {

namespace {

Result<std::optional<std::uint64_t>> freeInFileSystemOf(const URL& folder)
{
    struct statvfs status = {};
    if (::statvfs(folder.path().c_str(), &status) != 0)
        return errnoError(errno, folder);
    return std::optional(static_cast<std::uint64_t>(status.f_bavail) * status.f_frsize);
}

} // namespace

Result<std::optional<std::uint64_t>> LocalQuota::freeBytes(const std::stop_token& stop)
{
    const auto account = readAccountSize(quotaFileIn(home_));
    if (!account)
        return account.error();
    if (account->isUnlimited)
        return std::optional<std::uint64_t>();
    if (!account->bytes)
        return freeInFileSystemOf(driveFolder());
    const auto used = usage_.bytesIn(folders(), stop);
    if (!used)
        return used.error();
    return std::optional(*account->bytes > *used ? *account->bytes - *used : 0);
}

URL LocalQuota::driveFolder() const
{
    const auto container = cloud_.defaultContainer();
    return container ? container->documentsURL : home_;
}

std::vector<URL> LocalQuota::folders() const
{
    std::vector<URL> folders = {driveFolder()};
    for (const auto& library : cloud_.libraries())
        folders.push_back(library->documentsURL);
    return folders;
}

} // namespace tessel
