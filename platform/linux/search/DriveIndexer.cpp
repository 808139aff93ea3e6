#include "platform/linux/search/DriveIndexer.h"

#include "platform/files/TypeRegistry.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/cloud/TagAttribute.h"
#include "platform/linux/files/FileIdentity.h"
#include "platform/linux/files/FolderListing.h"
#include "platform/linux/search/IndexedText.h"
#include "platform/log/UnifiedLog.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>

namespace tessel {

namespace {

using namespace std::chrono_literals;

constexpr auto kLongestChange = 500ms; ///< another program waits for it
constexpr int kTextsInAStep = 16;
constexpr std::int64_t kMostBytesWithTexts = std::int64_t{1} << 30; ///< of the index
constexpr std::int64_t kNanoseconds = 1'000'000'000;

std::int64_t nanoseconds(const timespec& time)
{
    return time.tv_sec * kNanoseconds + time.tv_nsec;
}

/// A change that is so young may have been followed by another in the same tick of the file system's clock: then 0.
std::int64_t settled(std::int64_t time)
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const auto age = std::chrono::duration_cast<std::chrono::nanoseconds>(now).count() - time;
    return age > 2 * kNanoseconds ? time : 0;
}

std::string tagsOf(const URL& url)
{
    std::string text;
    if (const auto tags = readTagNames(url))
        for (const auto& tag : *tags)
            text += (text.empty() ? "" : " ") + tag;
    return text;
}

} // namespace

struct DriveIndexer::OpenedFolder {
    explicit OpenedFolder(const std::string& path)
        : path(path), url(URL::file(path)),
          descriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC)),
          isThere(descriptor.isOpen() || (errno != ENOENT && errno != ENOTDIR && errno != ELOOP))
    {
    }

    [[nodiscard]] std::optional<struct stat> statusOf(const std::string& name) const
    {
        struct stat status = {};
        return ::fstatat(descriptor.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 ? std::optional(status)
                                                                                            : std::nullopt;
    }

    const std::string path;
    const URL url;
    const FileDescriptor descriptor;
    const bool isThere; ///< though it may not be readable
};

DriveIndexer::DriveIndexer(SearchIndex& index, FolderWatches& watches, std::vector<URL> roots, const Services& services)
    : index_(index), watches_(watches), roots_(std::move(roots)), services_(services)
{
}

void DriveIndexer::lookAtAll(Look look)
{
    pending_.clear();
    for (const auto& root : roots_)
        pending_.push_back({root.path(), look});
    isLookingAtAll_ = true;
}

void DriveIndexer::take(const FolderWatches::News& news)
{
    if (news.all)
        return lookAtAll(Look::AtItems);
    for (const auto& [folder, names] : news.names) {
        if (names.empty())
            pending_.push_front({folder, Look::AtItems});
        else
            lookAtNames(folder, names);
    }
}

bool DriveIndexer::step()
{
    if (!pending_.empty()) {
        const auto folder = std::move(pending_.front());
        pending_.pop_front();
        lookAt(folder);
        if (pending_.empty() && isLookingAtAll_ && !services_.ends)
            finishLook();
    } else if (!readTexts()) {
        if (index_.mayHaveUnusedTexts())
            begin();
        index_.forgetUnusedTexts(false);
        commit();
        return false;
    }
    if (hasBegun_ && std::chrono::steady_clock::now() - begun_ > kLongestChange)
        commit();
    return true;
}

void DriveIndexer::finishLook()
{
    isLookingAtAll_ = false;
    for (const auto& top : index_.topFolders())
        if (std::ranges::none_of(roots_, [&](const URL& root) { return root.path() == top; }))
            forget(top);
    begin();
    index_.forgetUnusedTexts(true);
}

void DriveIndexer::begin()
{
    if (hasBegun_)
        return;
    hasBegun_ = index_.begin();
    hasFailed_ = hasFailed_ || !hasBegun_;
    begun_ = std::chrono::steady_clock::now();
}

void DriveIndexer::commit()
{
    if (std::exchange(hasBegun_, false))
        hasFailed_ = !index_.commit() || hasFailed_;
}

void DriveIndexer::lookAt(const Folder& folder)
{
    if (folder.look == Look::AtItems || !watches_.isWatched(folder.path)) {
        watches_.watch(folder.path);
        const OpenedFolder opened(folder.path);
        if (!opened.isThere)
            return forget(folder.path);
        const auto status = opened.statusOf(".");
        if (!status)
            return;
        if (folder.look == Look::AtItems || index_.changeTime(folder.path) != nanoseconds(status->st_mtim))
            return lookAtItems(opened, folder.look);
    }
    for (auto& inside : index_.foldersIn(folder.path))
        pending_.push_back({std::move(inside), folder.look});
}

void DriveIndexer::lookAtItems(const OpenedFolder& folder, Look look)
{
    const auto changed = folder.statusOf(".");
    std::vector<std::string> names;
    std::map<std::string, std::string> placeholders; // files by the names of their items
    const int error = visitNames(folder.descriptor.get(), [&](std::string_view name) {
        if (!isPlaceholderName(name) && isListedName(name))
            names.emplace_back(name);
        else if (isPlaceholderName(name))
            if (const auto record = readPlaceholder(folder.url.appending(name)))
                placeholders.emplace(record->name, name);
        return !services_.ends;
    });
    if (error != 0 || !changed || services_.ends)
        return;
    begin();
    index_.setFolder(folder.path, settled(nanoseconds(changed->st_mtim)));
    auto gone = index_.itemsIn(folder.path);
    const auto folders = index_.foldersIn(folder.path);
    const std::set<std::string> knownFolders(folders.begin(), folders.end());
    for (const auto& name : names) {
        const auto known = gone.find(name);
        const bool isFolder = !knownFolders.empty() && knownFolders.contains(folder.url.appending(name).path());
        if (setItem(folder, name, {known == gone.end() ? 0 : known->second, isFolder}) && known != gone.end())
            gone.erase(known);
        placeholders.erase(name);
    }
    for (const auto& [name, file] : placeholders)
        if (setPlaceholder(folder, file, name))
            gone.erase(name);
    for (const auto& [name, time] : gone)
        removeItem(folder, name);
    for (const auto& inside : index_.foldersIn(folder.path))
        pending_.push_back({inside, look});
}

void DriveIndexer::lookAtNames(const std::string& path, const std::set<std::string>& names)
{
    const OpenedFolder folder(path);
    if (!folder.isThere)
        return forget(path);
    if (!folder.descriptor.isOpen() || !index_.changeTime(path))
        return;
    begin();
    for (const auto& name : names) {
        if (!isPlaceholderName(name)) {
            lookAtName(folder, name);
            continue;
        }
        const auto record = readPlaceholder(folder.url.appending(name));
        if (!record) // whose it was is not known
            return pending_.push_front({path, Look::AtItems});
        lookAtName(folder, record->name);
    }
}

void DriveIndexer::lookAtName(const OpenedFolder& folder, const std::string& name)
{
    const auto item = folder.url.appending(name);
    const std::string placeholder(placeholderURL(item).lastPathComponent());
    const bool wasFolder = index_.changeTime(item.path()).has_value();
    if (!setItem(folder, name, {0, wasFolder}) && !setPlaceholder(folder, placeholder, name))
        return removeItem(folder, name);
    // It may be another folder than the one that was known under this name.
    if (index_.changeTime(item.path()))
        pending_.push_front({item.path(), Look::AtItems});
}

bool DriveIndexer::setItem(const OpenedFolder& folder, const std::string& name, const Known& known)
{
    const auto status = folder.statusOf(name);
    if (!status)
        return false;
    SearchIndex::Item item;
    item.changed = settled(nanoseconds(status->st_ctim));
    const bool isFolder = S_ISDIR(status->st_mode) && !services_.types.isPackageName(name);
    if (known.changed == item.changed && item.changed != 0 && known.isFolder == isFolder)
        return true;
    const auto url = folder.url.appending(name);
    if (isFolder && !known.isFolder)
        index_.setFolder(url.path(), 0);
    else if (!isFolder && known.isFolder)
        forget(url.path());
    item.tags = tagsOf(url);
    if (S_ISREG(status->st_mode) && status->st_size > 0 && isText(name))
        if (const auto identity = fileIdentity(url.path())) {
            item.document = std::to_string(identity->inode) + ' ' + std::to_string(identity->birth);
            item.version = std::to_string(status->st_size) + ' ' + std::to_string(nanoseconds(status->st_mtim));
        }
    index_.setItem(folder.path, name, item);
    return true;
}

bool DriveIndexer::setPlaceholder(const OpenedFolder& folder, const std::string& file, const std::string& name)
{
    if (!folder.statusOf(file))
        return false;
    SearchIndex::Item item;
    item.tags = tagsOf(folder.url.appending(file));
    index_.setItem(folder.path, name, item);
    return true;
}

void DriveIndexer::removeItem(const OpenedFolder& folder, const std::string& name)
{
    index_.removeItem(folder.path, name);
    const auto path = folder.url.appending(name).path();
    if (index_.changeTime(path))
        forget(path);
}

void DriveIndexer::forget(const std::string& folder)
{
    begin();
    index_.forget(folder);
    watches_.forget(folder);
}

bool DriveIndexer::isText(const std::string& name) const
{
    return services_.types.conforms(services_.types.identifierForFileName(name), "public.text");
}

bool DriveIndexer::readTexts()
{
    const auto unread = index_.unreadTexts(kTextsInAStep);
    if (unread.empty() || hasFailed() || services_.ends || isFullOfTexts())
        return false;
    begin();
    for (const auto& document : unread)
        index_.setText(document, textToIndex(document.url));
    return true;
}

bool DriveIndexer::isFullOfTexts()
{
    const bool isFull = index_.size() > kMostBytesWithTexts;
    if (isFull && !std::exchange(wasFull_, true))
        services_.log.write(LogLevel::Warning, "The search's index has %d bytes: no more texts are read for it",
                            index_.size());
    return isFull;
}

} // namespace tessel
