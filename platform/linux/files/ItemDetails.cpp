#include "platform/linux/files/ItemDetails.h"

#include "platform/cloud/CloudService.h"
#include "platform/files/TypeRegistry.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/files/AliasFile.h"
#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/files/FolderListing.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <unordered_set>

namespace tessel {

namespace {

namespace fs = std::filesystem;

/// Takes away the placeholders whose items are in the folder too. Reads the folder once more rather than to keep the
/// names of a million files for a few placeholders.
/// @returns whether it came to the end
bool forgetThoseOfFiles(int opened, const URL& folder, std::unordered_set<std::string>& placeholders,
                        const std::atomic<bool>& abandoned)
{
    ::lseek(opened, 0, SEEK_SET);
    const int error = visitNames(opened, [&](std::string_view name) {
        if (name.front() != '.')
            placeholders.erase(std::string(placeholderURL(folder.appending(name)).lastPathComponent()));
        return !abandoned && !placeholders.empty();
    });
    return error == 0 && !abandoned;
}

std::optional<std::uint32_t> countItems(const URL& folder, const std::atomic<bool>& abandoned)
{
    const FileDescriptor opened(::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    std::uint32_t count = 0;
    std::unordered_set<std::string> placeholders;
    const int error = visitNames(opened.get(), [&](std::string_view name) {
        if (name.front() != '.')
            count++;
        else if (isPlaceholderName(name))
            placeholders.emplace(name);
        return !abandoned;
    });
    if (error != 0 || abandoned)
        return std::nullopt;
    if (!placeholders.empty() && !forgetThoseOfFiles(opened.get(), folder, placeholders, abandoned))
        return std::nullopt;
    return count + static_cast<std::uint32_t>(placeholders.size());
}

std::optional<std::uint64_t> sizeBelow(const URL& package, const std::atomic<bool>& abandoned)
{
    std::uint64_t size = 0;
    std::error_code error;
    for (fs::recursive_directory_iterator item(package.path(), error), end; !error && item != end;
         item.increment(error)) {
        std::error_code vanished;
        if (abandoned)
            return std::nullopt;
        if (item->symlink_status(vanished).type() == fs::file_type::regular)
            if (const auto bytes = item->file_size(vanished); !vanished)
                size += bytes;
    }
    return error ? std::nullopt : std::optional(size);
}

} // namespace

ItemDetails readItemDetails(const URL& item, const FolderServices& services, const std::atomic<bool>& abandoned)
{
    ItemDetails details;
    if (auto tags = services.cloud.tagNames(item))
        details.tags = std::move(tags.value());
    struct stat status {};
    if (::lstat(item.path().c_str(), &status) != 0)
        return details;
    if (!S_ISDIR(status.st_mode))
        details.isAliasFile = S_ISREG(status.st_mode) && isAliasFile(item);
    else if (services.types.isPackageName(item.lastPathComponent()))
        details.packageSize = sizeBelow(item, abandoned);
    else
        details.itemCount = countItems(item, abandoned);
    return details;
}

} // namespace tessel
