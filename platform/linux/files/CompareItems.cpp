#include "platform/linux/files/CompareItems.h"

#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/files/ItemStamp.h"
#include "platform/linux/files/LinkText.h"
#include "platform/linux/files/TreeEnumeration.h"
#include "platform/linux/files/Uninterrupted.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

namespace {

constexpr std::size_t kBlock = 256 * 1024;

// Fills the block as far as the file goes; negative when it cannot be read.
ssize_t readBlock(int descriptor, std::string& block, off_t offset)
{
    std::size_t length = 0;
    while (length < block.size()) {
        const auto place = offset + static_cast<off_t>(length);
        const auto count =
            uninterrupted([&] { return ::pread(descriptor, block.data() + length, block.size() - length, place); });
        if (count <= 0)
            return count < 0 ? count : static_cast<ssize_t>(length);
        length += static_cast<std::size_t>(count);
    }
    return static_cast<ssize_t>(length);
}

bool areEqualFilesAt(const URL& left, const URL& right)
{
    const auto open = [](const URL& url) {
        return FileDescriptor(
            uninterrupted([&] { return ::open(url.path().c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC); }));
    };
    const auto one = open(left);
    const auto other = open(right);
    return one.isOpen() && other.isOpen() && areEqualFiles(one.get(), other.get());
}

// Every path below a folder, in one order; none when it cannot be read to the end.
std::optional<std::vector<std::string>> pathsBelow(const URL& folder)
{
    std::vector<std::string> paths;
    bool isComplete = true;
    enumerateTree(
        folder,
        [&](const URL& url, const FileAttributes&) { paths.push_back(url.path().substr(folder.path().size() + 1)); },
        [&](const URL&, const Error&) {
            isComplete = false;
            return OnEnumerationError::Stop;
        });
    std::ranges::sort(paths);
    return isComplete ? std::optional(std::move(paths)) : std::nullopt;
}

bool areEqualEntries(const URL& left, const URL& right)
{
    const auto one = stampOf(left);
    const auto other = stampOf(right);
    if (!one || !other || (one->mode & S_IFMT) != (other->mode & S_IFMT))
        return false;
    if (S_ISREG(one->mode))
        return one->size == other->size && areEqualFilesAt(left, right);
    return !S_ISLNK(one->mode) || linkText(left.path()) == linkText(right.path());
}

} // namespace

bool areEqualFiles(int left, int right)
{
    std::string one(kBlock, '\0');
    std::string other(kBlock, '\0');
    for (off_t offset = 0;; offset += static_cast<off_t>(kBlock)) {
        const auto length = readBlock(left, one, offset);
        if (length < 0 || readBlock(right, other, offset) != length)
            return false;
        const auto size = static_cast<std::size_t>(length);
        if (std::string_view(one).substr(0, size) != std::string_view(other).substr(0, size))
            return false;
        if (size < kBlock)
            return true;
    }
}

bool areEqualItems(const URL& left, const URL& right)
{
    if (!areEqualEntries(left, right))
        return false;
    if (const auto stamp = stampOf(left); !stamp || !S_ISDIR(stamp->mode))
        return stamp.has_value();
    const auto paths = pathsBelow(left);
    return paths && pathsBelow(right) == paths && std::ranges::all_of(*paths, [&](const std::string& path) {
               return areEqualEntries(left.appending(path), right.appending(path));
           });
}

} // namespace tessel
