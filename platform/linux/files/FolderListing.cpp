#include "platform/linux/files/FolderListing.h"

#include "platform/files/TypeRegistry.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/log/UnifiedLog.h"
#include "platform/run/StartThread.h"
#include "platform/text/TextServices.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <memory>

namespace tessel {

namespace {

constexpr std::size_t kBufferSize = 256 * 1024;
constexpr std::size_t kChunk = 256;
constexpr std::size_t kWorthAThread = 2 * kChunk;
constexpr std::size_t kScreenful = 50;

/// Runs `work(begin, end)` over all of [0, count) on this thread, after `firstHere`, and, when it is worth it, on
/// another one at the same time, if the system has one.
template <typename Work, typename First>
void shareWork(std::size_t count, const Work& work, const First& firstHere)
{
    std::atomic<std::size_t> next = 0;
    const auto takeChunks = [&] {
        for (auto begin = next.fetch_add(kChunk); begin < count; begin = next.fetch_add(kChunk))
            work(begin, std::min(begin + kChunk, count));
    };
    auto helper = count > kWorthAThread ? startThread(takeChunks) : std::thread();
    firstHere();
    takeChunks();
    if (helper.joinable())
        helper.join();
}

EntryKind kindOf(unsigned mode, std::string_view name, const TypeRegistry& types)
{
    if (S_ISLNK(mode))
        return EntryKind::Link;
    if (!S_ISDIR(mode))
        return EntryKind::File;
    return types.isPackageName(name) ? EntryKind::Package : EntryKind::Folder;
}

bool exists(int folder, const std::string& name)
{
    struct stat ignored {};
    return ::fstatat(folder, name.c_str(), &ignored, AT_SYMLINK_NOFOLLOW) == 0;
}

} // namespace

bool isListedName(std::string_view name)
{
    return !name.empty() && (name.front() != '.' || isPlaceholderName(name));
}

int visitEntries(int folder, const std::function<bool(std::string_view, unsigned)>& visit)
{
    const auto buffer = std::make_unique<char[]>(kBufferSize);
    while (true) {
        const long length = ::syscall(SYS_getdents64, folder, buffer.get(), kBufferSize);
        if (length <= 0)
            return length < 0 ? errno : 0;
        for (long offset = 0; offset < length;) {
            const auto* entry = reinterpret_cast<const dirent64*>(buffer.get() + offset);
            offset += entry->d_reclen;
            const std::string_view name = entry->d_name;
            if (name != "." && name != ".." && !visit(name, static_cast<mode_t>(DTTOIF(entry->d_type))))
                return 0;
        }
    }
}

int visitNames(int folder, const std::function<bool(std::string_view)>& visit)
{
    return visitEntries(folder, [&](std::string_view name, unsigned) { return visit(name); });
}

std::optional<FolderEntry> describeItem(int folder, std::string_view name, const TypeRegistry& types)
{
    char path[PATH_MAX];
    if (name.size() >= sizeof path) { // as the kernel would answer; never ask for another item by a part of the name
        errno = ENAMETOOLONG;
        return std::nullopt;
    }
    path[name.copy(path, name.size())] = '\0';
    struct statx status {};
    if (::statx(folder, path, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, STATX_TYPE | STATX_SIZE | STATX_MTIME, &status))
        return std::nullopt;
    FolderEntry entry;
    entry.kind = kindOf(status.stx_mode, name, types);
    if (entry.kind == EntryKind::File)
        entry.size = static_cast<std::int64_t>(status.stx_size);
    entry.modificationTime = status.stx_mtime.tv_sec * 1'000'000'000 + status.stx_mtime.tv_nsec;
    return entry;
}

std::optional<PlaceholderItem> readPlaceholderItem(const URL& placeholder, const FolderServices& services)
{
    auto record = readPlaceholder(placeholder);
    if (!record) {
        if (record.error().code == ErrorCode::kReadCorrupt)
            services.log.write(LogLevel::Error, "Damaged placeholder '%@'", placeholder);
        return std::nullopt;
    }
    auto& name = record.value().name;
    if (!isListedName(name) || name.size() > NAME_MAX)
        return std::nullopt;
    FolderEntry entry;
    entry.size = static_cast<std::int64_t>(record->size);
    entry.modificationTime = record->modificationDate.nanoseconds;
    entry.kind = services.types.isPackageName(name) ? EntryKind::Package : EntryKind::File;
    entry.inCloud = true;
    return PlaceholderItem{std::move(name), entry};
}

FolderListing::FolderListing(int folder, const URL& url, const FolderServices& services,
                             const std::atomic<bool>& abandoned)
    : folder_(folder), url_(url), services_(services), abandoned_(abandoned)
{
}

int FolderListing::readNames()
{
    std::vector<std::string> placeholderFiles;
    const int error = visitEntries(folder_, [&](std::string_view name, unsigned type) {
        if (name.front() != '.')
            appendFile(name, kindOf(type, name, services_.types));
        else if (isPlaceholderName(name))
            placeholderFiles.emplace_back(name);
        return !abandoned_;
    });
    readPlaceholders(placeholderFiles);
    return abandoned_ ? ECANCELED : error;
}

void FolderListing::appendFile(std::string_view name, EntryKind kind)
{
    FolderEntry entry;
    entry.kind = kind;
    items_.append(name, entry);
    kinds_.push_back(kind);
}

void FolderListing::readPlaceholders(const std::vector<std::string>& files)
{
    std::vector<std::optional<PlaceholderItem>> found(files.size());
    const auto read = [&](std::size_t begin, std::size_t end) {
        for (auto index = begin; index < end && !abandoned_; ++index)
            found[index] = readPlaceholderItem(url_.appending(files[index]), services_);
    };
    shareWork(files.size(), read, [] {});
    for (std::size_t index = 0; index < files.size() && !abandoned_; ++index) {
        if (!found[index])
            continue;
        const auto& [name, entry] = *found[index];
        if (!exists(folder_, name))
            items_.append(name, entry);
        placeholders_.emplace(files[index], name);
    }
}

FolderTable FolderListing::firstRows(const std::vector<std::string_view>& names) const
{
    FolderTable result;
    for (const auto index : services_.text.firstOfNames(names, kScreenful)) {
        const bool isFile = index < kinds_.size();
        result.append(names[index], isFile ? describeFile(names[index], kinds_[index]) : items_.entry(index));
    }
    return result;
}

void FolderListing::describeItems(std::size_t begin, std::size_t end)
{
    for (auto index = begin; index < end && !abandoned_; ++index)
        items_.setEntry(index, describeFile(items_.name(index), kinds_[index]));
}

FolderEntry FolderListing::describeFile(std::string_view name, EntryKind kind) const
{
    FolderEntry entry;
    entry.kind = kind;
    return describeItem(folder_, name, services_.types).value_or(entry);
}

FolderTable FolderListing::allRows(const std::function<void(FolderTable)>& tellFirst)
{
    const auto names = items_.names();
    std::vector<std::uint32_t> order;
    const auto describe = [this](std::size_t begin, std::size_t end) { describeItems(begin, end); };
    shareWork(kinds_.size(), describe, [&] {
        if (tellFirst && names.size() > kScreenful && !abandoned_)
            tellFirst(firstRows(names));
        if (!abandoned_)
            order = services_.text.orderOfNames(names);
    });
    items_.arrange(order);
    return std::move(items_);
}

} // namespace tessel
