#include "platform/linux/files/RenameCase.h"

#include "platform/linux/files/ItemStamp.h"
#include "platform/linux/files/RenameWithoutReplacing.h"
#include "platform/linux/files/UnfinishedWork.h"

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace tessel {

namespace {

// Whether the folder lists an item under this very name. One that is found under it but not listed has another name
// that counts as the same.
bool isListed(const URL& url)
{
    namespace fs = std::filesystem;
    std::error_code failure;
    for (fs::directory_iterator entry(url.deletingLastPathComponent().path(), failure);
         !failure && entry != fs::directory_iterator(); entry.increment(failure))
        if (entry->path().filename().native() == url.lastPathComponent())
            return true;
    return static_cast<bool>(failure);
}

bool isSameEntry(const URL& from, const URL& to)
{
    const auto one = stampOf(from);
    const auto other = stampOf(to);
    return one && other && one->isSameItem(*other) &&
           from.deletingLastPathComponent() == to.deletingLastPathComponent() && !isListed(to);
}

} // namespace

bool renameCase(const URL& from, const URL& to, const UnfinishedWork& unfinished)
{
    if (!isSameEntry(from, to)) {
        errno = EEXIST;
        return false;
    }
    // Whoever is killed between the two steps has renamed it, once the next start has cleared up.
    const auto between = hiddenNameBeside(from);
    auto note = unfinished.remember({between, to, {}, {}, {}});
    if (!renameWithoutReplacing(from, between))
        return false;
    if (renameWithoutReplacing(between, to))
        return true;
    const int failure = errno;
    if (!renameWithoutReplacing(between, from))
        note.abandon();
    errno = failure;
    return false;
}

} // namespace tessel
