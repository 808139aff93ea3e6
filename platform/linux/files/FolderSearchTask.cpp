#include "platform/linux/files/FolderSearchTask.h"

#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/files/FolderListing.h"
#include "platform/linux/files/ItemDetails.h"
#include "platform/run/MainQueue.h"
#include "platform/text/TextServices.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <utility>

namespace tessel {

namespace {

// Often enough to be followed with the eye, and few enough hits that sorting them in holds up no frame.
constexpr auto kDeliveryInterval = std::chrono::milliseconds(50);
constexpr std::size_t kHitsInOneGo = 256;

/// Opens a folder whose path may be longer than the kernel takes at once, piece by piece.
/// @param start an open folder that a relative path begins at
FileDescriptor openDeepFolder(int start, std::string_view path)
{
    constexpr std::size_t kPiece = PATH_MAX - 1;
    FileDescriptor folder;
    while (true) {
        const bool isLast = path.size() <= kPiece;
        const std::string piece(path.substr(0, isLast ? path.size() : path.rfind('/', kPiece)));
        const int mode = (isLast ? O_RDONLY : O_PATH) | O_DIRECTORY | O_CLOEXEC;
        folder = FileDescriptor(::openat(folder.isOpen() ? folder.get() : start, piece.c_str(), mode));
        if (isLast || !folder.isOpen())
            return folder;
        path.remove_prefix(piece.size() + 1);
    }
}

} // namespace

FolderSearchTask::FolderSearchTask(const std::vector<URL>& folders, std::string_view query, SearchClient client,
                                   const FolderServices& services)
    : query_(services.text.searchFolded(query)), client_(std::move(client)), services_(services),
      folders_({folders.begin(), folders.end()})
{
}

void FolderSearchTask::run()
{
    for (; !folders_.empty() && !ended_; folders_.pop())
        searchFolder(folders_.front());
    tellFound();
    services_.mainQueue.async([self = shared_from_this()] {
        if (!self->ended_ && self->client_.finished)
            self->client_.finished();
    });
}

void FolderSearchTask::searchFolder(const URL& url)
{
    auto folder = open(url);
    // What vanishes or cannot be read meanwhile has nothing to be found in.
    [[maybe_unused]] const int error = visitNames(folder.get(), [&](std::string_view name) {
        if (isListedName(name))
            look(folder.get(), url, name);
        const bool isTime = std::chrono::steady_clock::now() - delivered_ >= kDeliveryInterval;
        if (isTime || hits_.size() >= kHitsInOneGo)
            deliver();
        return !ended_;
    });
    previous_ = std::move(folder);
    previousURL_ = url;
}

/// Way down a chain of folders each is opened from the one before, not from the very top.
FileDescriptor FolderSearchTask::open(const URL& url) const
{
    if (!previous_.isOpen() || !previousURL_ || !previousURL_->contains(url))
        return openDeepFolder(AT_FDCWD, url.path());
    const std::string_view path = url.path();
    return openDeepFolder(previous_.get(), path.substr(path.find_first_not_of('/', previousURL_->path().size())));
}

void FolderSearchTask::look(int folder, const URL& url, std::string_view fileName)
{
    if (!isPlaceholderName(fileName)) {
        if (const auto entry = describeItem(folder, fileName, services_.types))
            consider(url, fileName, *entry);
        return;
    }
    const auto item = readPlaceholderItem(url.appending(fileName), services_);
    if (item && !describeItem(folder, item->name, services_.types))
        consider(url, item->name, item->entry);
}

void FolderSearchTask::consider(const URL& folder, std::string_view name, const FolderEntry& entry)
{
    if (entry.kind == EntryKind::Folder)
        folders_.push(folder.appending(name));
    if (services_.text.searchFolded(name).find(query_) == std::string::npos)
        return;
    const auto url = folder.appending(name);
    hits_.push_back({url, entry, readItemDetails(url, services_, ended_)});
}

void FolderSearchTask::deliver()
{
    delivered_ = std::chrono::steady_clock::now();
    // A main queue that is busy is not given more to do: the hits wait here until it has taken those before.
    if (!isDelivering_)
        tellFound();
}

void FolderSearchTask::tellFound()
{
    if (hits_.empty())
        return;
    isDelivering_ = true;
    auto hits = std::make_shared<std::vector<SearchHit>>(std::exchange(hits_, {}));
    services_.mainQueue.async([self = shared_from_this(), hits] {
        if (!self->ended_ && self->client_.found)
            self->client_.found(std::move(*hits));
        self->isDelivering_ = false;
    });
}

} // namespace tessel
