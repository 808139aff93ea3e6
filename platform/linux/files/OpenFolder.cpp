#include "platform/linux/files/OpenFolder.h"

#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/files/FolderListing.h"
#include "platform/linux/files/ItemDetails.h"
#include "platform/run/MainQueue.h"
#include "platform/run/OperationQueue.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <utility>

namespace tessel {

namespace {

// Applied to the list in one go on the main queue, which takes a few microseconds each.
constexpr std::size_t kChangesInOneGo = 256;

// More folders than fit on any screen; the system's watches are not only ours.
constexpr std::size_t kWatchedFoldersInside = 256;

FileDescriptor openFolder(const URL& url, int mode)
{
    return FileDescriptor(::open(url.path().c_str(), mode | O_DIRECTORY | O_CLOEXEC));
}

} // namespace

OpenFolder::OpenFolder(const URL& url, FolderReadingClient client, const FolderServices& services,
                       FolderMonitor& monitor, OperationQueue& workers)
    : url_(url), client_(std::move(client)), services_(services), monitor_(monitor), workers_(workers)
{
}

void OpenFolder::begin()
{
    workers_.addOperation([self = shared_from_this()] { self->read(); });
}

void OpenFolder::end()
{
    ended_ = true;
    // On a worker, for the monitor may be held up by a disk that hangs.
    workers_.addOperation([self = shared_from_this()] { self->monitor_.unwatch(*self); });
}

/// Calls back on the main thread, unless the reading has ended by then.
template <typename... Parameters, typename... Arguments>
void OpenFolder::tell(Callback<Parameters...> callback, Last last, Arguments... arguments)
{
    // Tables are large: they are moved into the task and out of it, never copied.
    auto held = std::make_shared<std::tuple<Arguments...>>(std::move(arguments)...);
    {
        const std::lock_guard lock(mutex_);
        toldButNotTaken_++;
    }
    services_.mainQueue.async([self = shared_from_this(), callback, last, held] {
        if (self->ended_)
            return;
        self->wasTaken(); // before the call, which may end the reader
        if (last == Last::Yes)
            self->end();
        if (const auto& call = self->client_.*callback)
            std::apply([&](auto&... values) { call(std::move(values)...); }, *held);
    });
}

OpenFolder::Identity OpenFolder::identityOf(int folder)
{
    struct stat status {};
    if (::fstat(folder, &status) != 0)
        return {};
    return {status.st_dev, status.st_ino, status.st_mtim.tv_sec * 1'000'000'000 + status.st_mtim.tv_nsec};
}

void OpenFolder::wasTaken()
{
    const std::lock_guard lock(mutex_);
    toldButNotTaken_--;
    if (!news_.empty())
        followSoon();
}

void OpenFolder::read()
{
    if (ended_)
        return;
    const auto folder = openFolder(url_, O_RDONLY);
    const int error = folder.isOpen() ? readFirstTime(folder.get()) : errno;
    if (error != 0)
        tell(&FolderReadingClient::failed, Last::Yes, errnoError(error, url_));
    else
        workers_.addOperation([self = shared_from_this()] { self->followNews(); });
}

int OpenFolder::readFirstTime(int folder)
{
    identity_ = identityOf(folder);
    monitor_.watch(folder, url_.path(), shared_from_this());
    if (ended_) { // perhaps before there was something to unwatch
        monitor_.unwatch(*this);
        return ECANCELED;
    }
    // It was opened before the folders above it were watched. Had it moved by then, no event would tell.
    if (const auto found = openFolder(url_, O_PATH);
        !found.isOpen() || !identityOf(found.get()).isSameFolder(identity_))
        folderChanged({.names = {}, .mayHaveMoved = true});
    FolderListing listing(folder, url_, services_, ended_);
    if (const int error = listing.readNames(); error != 0)
        return error;
    auto rows = listing.allRows(
        [this](FolderTable first) { tell(&FolderReadingClient::firstRows, Last::No, std::move(first)); });
    placeholders_ = listing.takePlaceholders();
    tell(&FolderReadingClient::complete, Last::No, std::move(rows));
    return 0;
}

void OpenFolder::folderChanged(FolderNews news)
{
    const std::lock_guard lock(mutex_);
    news_.add(std::move(news), monitor_.changedNamesLimit());
    followSoon();
}

/// Under the lock.
void OpenFolder::followSoon()
{
    if (toldButNotTaken_ == 0 && !std::exchange(isFollowing_, true))
        workers_.addOperation([self = shared_from_this()] { self->followNews(); });
}

void OpenFolder::followNews()
{
    while (!ended_) {
        FolderNews news;
        {
            const std::lock_guard lock(mutex_);
            if (news_.empty() || toldButNotTaken_ > 0) {
                isFollowing_ = false;
                return;
            }
            news = std::exchange(news_, {});
        }
        if (!follow(news))
            return;
    }
}

/// @returns whether there is a folder left to follow
bool OpenFolder::follow(const FolderNews& news)
{
    if (news.mayHaveMoved) // before it is found out whether it has, so that no later move is missed
        monitor_.watchFoldersAbove(url_.path(), *this);
    const auto folder = openFolder(url_, O_PATH);
    const int error = errno;
    const auto found = folder.isOpen() ? identityOf(folder.get()) : Identity();
    const bool isGone = folder.isOpen() ? !found.isSameFolder(identity_) : error == ENOENT || error == ENOTDIR;
    if (news.removed || isGone) {
        tell(&FolderReadingClient::removed, Last::Yes);
        return false;
    }
    const bool hasChanged = news.mayHaveChanged && found.modificationTime != identity_.modificationTime;
    const bool isToBeRead = isFailing_ || news.readAnew || hasChanged || !folder.isOpen();
    if (isToBeRead || !lookAt(folder.get(), news.names))
        readAnew();
    return true;
}

void OpenFolder::readAnew()
{
    const auto folder = openFolder(url_, O_RDONLY);
    const int error = folder.isOpen() ? readAnew(folder.get()) : errno;
    if (!ended_)
        setFailing(error);
}

int OpenFolder::readAnew(int folder)
{
    identity_.modificationTime = identityOf(folder).modificationTime;
    FolderListing listing(folder, url_, services_, ended_);
    if (const int error = listing.readNames(); error != 0)
        return error;
    tell(&FolderReadingClient::replaced, Last::No, listing.allRows({}));
    placeholders_ = listing.takePlaceholders();
    return 0;
}

/// Tells the beginning of a failure. Its end may come without an event of the folder's own, such as when a folder above
/// is opened to the user or another program leaves a descriptor for this one.
void OpenFolder::setFailing(int error)
{
    const bool isFailing = error != 0;
    if (isFailing == isFailing_)
        return;
    isFailing_ = isFailing;
    monitor_.lookNowAndThen(*this, isFailing);
    if (isFailing)
        tell(&FolderReadingClient::failed, Last::No, errnoError(error, url_));
}

/// @returns false when something could not be looked at, which may be the folder's fault
bool OpenFolder::lookAt(int folder, const std::set<std::string>& names)
{
    std::vector<FolderChange> changes;
    const auto items = itemNames(names);
    auto name = items.begin();
    for (; name != items.end() && changes.size() < kChangesInOneGo; ++name) {
        if (ended_)
            return true;
        auto change = lookAt(folder, *name);
        if (!change)
            return false;
        changes.push_back(std::move(*change));
    }
    if (name != items.end())
        lookLater({name, items.end()});
    if (!changes.empty())
        tell(&FolderReadingClient::changed, Last::No, std::move(changes));
    return true;
}

void OpenFolder::lookLater(std::set<std::string> names)
{
    const std::lock_guard lock(mutex_);
    news_.add({.names = std::move(names)}, monitor_.changedNamesLimit());
}

/// The items to look at for these files: the files themselves, and those that the placeholders among them stand or
/// stood for.
std::set<std::string> OpenFolder::itemNames(const std::set<std::string>& fileNames)
{
    std::set<std::string> result;
    for (const auto& name : fileNames) {
        if (!isPlaceholderName(name)) {
            result.insert(name);
            continue;
        }
        if (const auto known = placeholders_.find(name); known != placeholders_.end())
            result.insert(placeholders_.extract(known).mapped());
        if (const auto item = readPlaceholderItem(url_.appending(name), services_)) {
            result.insert(item->name);
            placeholders_.emplace(name, item->name);
        }
    }
    return result;
}

/// @returns none when nothing can be said of the item
std::optional<FolderChange> OpenFolder::lookAt(int folder, const std::string& name) const
{
    if (const auto entry = describeItem(folder, name, services_.types))
        return FolderChange{name, entry};
    if (errno != ENOENT && errno != ENOTDIR)
        return std::nullopt;
    const auto item = readPlaceholderItem(placeholderURL(url_.appending(name)), services_);
    return FolderChange{name, item ? std::optional(item->entry) : std::nullopt};
}

void OpenFolder::fetchDetails(std::vector<URL> items)
{
    if (ended_)
        return;
    detailsToCome_ = items.size();
    const std::lock_guard lock(mutex_);
    wantedDetails_.assign(items.rbegin(), items.rend());
    wantedRound_ = ++detailsRound_;
    if (!items.empty() && !std::exchange(isFetching_, true))
        workers_.addOperation([self = shared_from_this()] { self->fetchNextDetails(); });
}

// In the direction in which news go, so that they are met on one side or the other.
bool OpenFolder::isCatchingUp()
{
    if (ended_)
        return false;
    if (monitor_.hasNewsFor(*this))
        return true;
    const std::lock_guard lock(mutex_);
    return isFollowing_ || toldButNotTaken_ > 0 || !news_.empty();
}

/// Has the items of a folder in this one counted again when their number changes.
/// @returns whether that begins now
bool OpenFolder::watchContents(const URL& item)
{
    const bool isInside = item.deletingLastPathComponent() == url_;
    if (!isInside || watchedInside_ == kWatchedFoldersInside || !monitor_.watchContents(item.path(), *this))
        return false;
    watchedInside_++;
    return true;
}

void OpenFolder::fetchNextDetails()
{
    while (true) {
        std::unique_lock lock(mutex_);
        if (ended_ || wantedDetails_.empty()) {
            isFetching_ = false;
            return;
        }
        const URL item = std::move(wantedDetails_.back());
        wantedDetails_.pop_back();
        const auto round = wantedRound_;
        lock.unlock();
        auto details = readItemDetails(item, services_, ended_);
        if (details.itemCount && watchContents(item))
            details = readItemDetails(item, services_, ended_); // it may have changed before it was watched
        services_.mainQueue.async([self = shared_from_this(), item, details = std::move(details), round] {
            if (self->ended_)
                return;
            if (round == self->detailsRound_)
                self->detailsToCome_--;
            if (self->client_.details)
                self->client_.details(item, details);
        });
    }
}

} // namespace tessel
