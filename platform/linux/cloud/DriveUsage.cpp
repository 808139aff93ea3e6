#include "platform/linux/cloud/DriveUsage.h"

#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/files/FileStatus.h"
#include "platform/linux/files/TreeEnumeration.h"

#include <fcntl.h>

namespace tessel {

namespace {

constexpr int kRest = 10; ///< times as long as a count took, until the next one

std::uint64_t sizeInCloud(const URL& placeholder)
{
    const auto record = readPlaceholder(placeholder);
    if (!record)
        return 0;
    const auto document = placeholder.deletingLastPathComponent().appending(record->name);
    return fileAttributesAt(AT_FDCWD, document.path().c_str()) ? 0 : record->size;
}

Result<std::uint64_t> bytesBelow(const URL& folder, const std::stop_token& stop)
{
    std::uint64_t bytes = 0;
    std::optional<Error> failure;
    const auto add = [&bytes](const URL& url, const FileAttributes& attributes) {
        if (attributes.kind == FileKind::RegularFile)
            bytes += isPlaceholderName(url.lastPathComponent()) ? sizeInCloud(url) : attributes.size.value_or(0);
    };
    const auto leaveOut = [&](const URL& url, const Error& error) {
        if (url == folder)
            failure = error;
        return OnEnumerationError::Continue;
    };
    enumerateTree(folder, add, leaveOut, stop);
    return failure ? Result<std::uint64_t>(*failure) : Result(bytes);
}

} // namespace

Result<std::uint64_t> DriveUsage::bytesIn(const std::vector<URL>& folders, const std::stop_token& stop)
{
    const std::lock_guard lock(mutex_);
    const auto start = clock_.uptime();
    if (last_ && last_->folders == folders && start < last_->goodUntil)
        return last_->bytes;
    std::uint64_t bytes = 0;
    for (const auto& folder : folders) {
        const auto inFolder = bytesBelow(folder, stop);
        if (!inFolder)
            return inFolder.error();
        bytes += *inFolder;
    }
    const auto end = clock_.uptime();
    if (!stop.stop_requested())
        last_ = {folders, bytes, end + kRest * (end - start)};
    return bytes;
}

} // namespace tessel
