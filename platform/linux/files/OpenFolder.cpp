#include "platform/linux/files/OpenFolder.h"

#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/files/FolderListing.h"
#include "platform/linux/files/FolderWorkers.h"
#include "platform/linux/files/ItemDetails.h"
#include "platform/run/MainQueue.h"

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
                       FolderMonitor& monitor, FolderWorkers& workers)
    : url_(url), client_(std::move(client)), services_(services), monitor_(monitor), workers_(workers)
{
}

void OpenFolder::begin()
{
    workers_.run([self = shared_from_this()] { self->read(); });
}

void OpenFolder::end()
{
    ended_ = true;
    // On a worker, for the monitor may be held up by a disk that hangs.
    workers_.run([self = shared_from_this()] { self->monitor_.unwatch(*self); });
}

/// Calls back on the main thread, unless the reading has ended by then.
template <typename... Parameters, typename... Arguments>
void OpenFolder::tell(Callback<Parameters...> callback, Last last, Arguments... arguments)
{
    // Tables are large: they are moved into the task and out of it, never copied.
    auto held = std::make_shared<std::tuple<Arguments...>>(std::move(arguments)...);
    services_.mainQueue.async([self = shared_from_this(), callback, last, held] {
        if (self->ended_)
            return;
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

void OpenFolder::fail(int error)
{
    tell(&FolderReadingClient::failed, Last::Yes, errnoError(error, url_));
}

void OpenFolder::read()
{
    if (ended_)
        return;
    const auto folder = openFolder(url_, O_RDONLY);
    const int error = folder.isOpen() ? readFirstTime(folder.get()) : errno;
    if (error != 0)
        fail(error);
    else
        workers_.run([self = shared_from_this()] { self->followNews(); });
}

int OpenFolder::readFirstTime(int folder)
{
    identity_ = identityOf(folder);
    monitor_.watch(folder, url_.path(), shared_from_this());
    if (ended_) { // perhaps before there was something to unwatch
        monitor_.unwatch(*this);
        return ECANCELED;
    }
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
    news_.add(std::move(news));
    if (!std::exchange(isFollowing_, true))
        workers_.run([self = shared_from_this()] { self->followNews(); });
}

void OpenFolder::followNews()
{
    while (!ended_) {
        FolderNews news;
        {
            const std::lock_guard lock(mutex_);
            news = std::exchange(news_, {});
            if (news.empty()) {
                isFollowing_ = false;
                return;
            }
        }
        if (!follow(news))
            return;
    }
}

/// @returns whether there is a folder left to follow
bool OpenFolder::follow(const FolderNews& news)
{
    const auto folder = openFolder(url_, O_PATH);
    const int error = errno;
    const auto found = folder.isOpen() ? identityOf(folder.get()) : Identity();
    const bool isGone = folder.isOpen() ? !found.isSameFolder(identity_) : error == ENOENT || error == ENOTDIR;
    if (news.removed || isGone) {
        tell(&FolderReadingClient::removed, Last::Yes);
        return false;
    }
    if (news.readAnew || (news.mayHaveChanged && found.modificationTime != identity_.modificationTime))
        return readAnew();
    if (folder.isOpen())
        lookAt(folder.get(), news.names);
    return true;
}

bool OpenFolder::readAnew()
{
    const auto folder = openFolder(url_, O_RDONLY);
    int error = errno;
    if (folder.isOpen()) {
        identity_.modificationTime = identityOf(folder.get()).modificationTime;
        FolderListing listing(folder.get(), url_, services_, ended_);
        error = listing.readNames();
        if (error == 0) {
            tell(&FolderReadingClient::replaced, Last::No, listing.allRows({}));
            placeholders_ = listing.takePlaceholders();
            return true;
        }
    }
    fail(error);
    return false;
}

void OpenFolder::lookAt(int folder, const std::set<std::string>& names)
{
    std::vector<FolderChange> changes;
    for (const auto& name : itemNames(names)) {
        if (ended_)
            return;
        if (auto change = lookAt(folder, name))
            changes.push_back(std::move(*change));
        if (changes.size() == kChangesInOneGo)
            tell(&FolderReadingClient::changed, Last::No, std::exchange(changes, {}));
    }
    if (!changes.empty())
        tell(&FolderReadingClient::changed, Last::No, std::move(changes));
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
    if (errno != ENOENT)
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
        workers_.run([self = shared_from_this()] { self->fetchNextDetails(); });
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
