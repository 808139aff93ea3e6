#include "platform/linux/coordination/PresentedItem.h"

#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/files/LinkText.h"
#include "platform/run/MainQueue.h"
#include "platform/run/OperationQueue.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <string_view>
#include <utility>

namespace tessel {

namespace {

// Programs save by moving the old file away before the new one has its name: only what is gone for so long is gone.
constexpr double kGrace = 0.3; // seconds
constexpr std::chrono::seconds kLongestMove(10);
constexpr std::string_view kDeleted = " (deleted)";

FileDescriptor opened(const std::string& path)
{
    return FileDescriptor(::open(path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
}

std::string physicalPath(const std::string& path)
{
    struct stat ignored = {};
    return ::lstat(path.c_str(), &ignored) == 0 ? path : placeholderURL(URL::file(path)).path();
}

// Something of a change that is under way, in which the item is about to be removed.
bool isHidden(const std::string& path)
{
    return path.find("/.tsd-temporary-") != std::string::npos;
}

} // namespace

class PresentedItem::Listener final : public FolderMonitor::Listener {
public:
    Listener(const std::shared_ptr<PresentedItem>& item, bool isInside) : item_(item), isInside_(isInside) {}

    void folderChanged(FolderNews) override
    {
        if (const auto item = item_.lock(); item && item->ownAccesses_ == 0)
            item->lookAgain(isInside_);
    }

private:
    const std::weak_ptr<PresentedItem> item_;
    const bool isInside_;
};

PresentedItem::PresentedItem(FilePresenter& presenter, std::string path, MainQueue& mainQueue, FolderMonitor& monitor)
    : presenter_(presenter), mainQueue_(mainQueue), monitor_(monitor), path_(std::move(path))
{
}

PresentedItem::~PresentedItem()
{
    unwatch();
}

void PresentedItem::follow()
{
    const std::lock_guard lock(mutex_);
    watchAnew();
}

void PresentedItem::end()
{
    {
        const std::lock_guard lock(askingMutex_);
        hasEnded_ = true;
    }
    if (telling_ != std::this_thread::get_id())
        const std::lock_guard lock(tellingMutex_); // until it has been told
    const std::lock_guard lock(mutex_);
    unwatch();
}

std::string PresentedItem::path() const
{
    const std::lock_guard lock(mutex_);
    return path_;
}

void PresentedItem::tell(const Work& work)
{
    ask(nullptr, [work](FilePresenter& presenter, const std::shared_ptr<Answers::Owed>&) { work(presenter); });
}

void PresentedItem::ask(const std::shared_ptr<Answers::Owed>& owed, const AskingWork& work)
{
    const std::lock_guard lock(askingMutex_);
    if (hasEnded_)
        return;
    presenter_.presentedItemOperationQueue().addOperation([self = shared_from_this(), owed, work] {
        const std::lock_guard lock(self->tellingMutex_);
        self->telling_ = std::this_thread::get_id();
        if (!self->hasEnded_)
            work(self->presenter_, owed);
        self->telling_ = std::thread::id();
    });
}

void PresentedItem::expectMove()
{
    const std::lock_guard lock(mutex_);
    moveExpectedUntil_ = std::chrono::steady_clock::now() + kLongestMove;
}

void PresentedItem::takeMove(const std::string& to, bool silently)
{
    {
        const std::lock_guard lock(mutex_);
        moveExpectedUntil_ = {};
        if (path_ == to)
            return;
        path_ = to;
        watchAnew();
    }
    if (!silently)
        tell([url = URL::file(to)](FilePresenter& presenter) { presenter.presentedItemDidMoveToURL(url); });
}

void PresentedItem::takeChange(bool silently)
{
    bool hasChanged = false;
    {
        const std::lock_guard lock(mutex_);
        const auto now = sight();
        hasChanged = now && now != sight_;
        const bool isAnother = hasChanged && (!sight_ || !now->stamp.isSameItem(sight_->stamp));
        sight_ = now;
        if (isAnother)
            watchAnew();
    }
    if (hasChanged && !silently)
        tell([](FilePresenter& presenter) { presenter.presentedItemDidChange(); });
}

void PresentedItem::lookAgain(bool isInside)
{
    {
        const std::lock_guard lock(mutex_);
        if (!sight()) {
            if (sight_)
                judgeAbsenceLater();
            return;
        }
    }
    takeChange(isInside);
    if (isInside)
        tell([](FilePresenter& presenter) { presenter.presentedItemDidChange(); });
}

void PresentedItem::judgeAbsenceLater()
{
    if (std::exchange(isJudging_, true))
        return;
    mainQueue_.after(kGrace, [item = weak_from_this()] {
        if (const auto self = item.lock())
            self->judgeAbsence();
    });
}

void PresentedItem::judgeAbsence()
{
    std::optional<std::string> place;
    {
        const std::lock_guard lock(mutex_);
        isJudging_ = false;
        if (!sight_) // somebody has told of it meanwhile
            return;
        if (!sight()) {
            if (std::chrono::steady_clock::now() < moveExpectedUntil_)
                return judgeAbsenceLater();
            place = placeOfItem();
            if (!place)
                sight_.reset();
        } else {
            place = path_;
        }
    }
    if (!place)
        return tell([](FilePresenter& presenter) {
            presenter.accommodatePresentedItemDeletionWithCompletionHandler([](const std::optional<Error>&) {});
        });
    takeMove(*place, false);
    takeChange(false);
}

// What is looked at is what the descriptor leads to, and nothing that happens after the look goes unseen.
void PresentedItem::watchAnew()
{
    constexpr int kTries = 8; // an editor may replace it at any moment
    for (int i = 0; i < kTries; ++i) {
        unwatch();
        watch();
        const auto now = sight();
        if (!now)
            return judgeAbsenceLater();
        sight_ = now;
        const auto open = stampOf(item_.get());
        if (open && open->isSameItem(now->stamp))
            return;
    }
}

void PresentedItem::watch()
{
    const auto physical = physicalPath(path_);
    item_ = opened(physical);
    const auto self = shared_from_this();
    const auto folder = URL::file(path_).deletingLastPathComponent().path();
    if (const auto around = opened(folder); around.isOpen()) {
        around_ = std::make_shared<Listener>(self, false);
        monitor_.watch(around.get(), folder, around_);
    }
    struct stat status = {};
    if (item_.isOpen() && ::fstat(item_.get(), &status) == 0 && S_ISDIR(status.st_mode)) {
        inside_ = std::make_shared<Listener>(self, true);
        monitor_.watch(item_.get(), path_, inside_);
    }
}

void PresentedItem::unwatch()
{
    for (auto* listener : {&around_, &inside_}) {
        if (*listener)
            monitor_.unwatch(**listener);
        listener->reset();
    }
}

std::optional<PresentedItem::Sight> PresentedItem::sight() const
{
    struct stat status = {};
    const auto physical = URL::file(physicalPath(path_));
    const auto stamp = stampOf(physical);
    if (!stamp || ::lstat(physical.path().c_str(), &status) != 0)
        return std::nullopt;
    return Sight{*stamp, status.st_ctim.tv_sec * 1'000'000'000 + status.st_ctim.tv_nsec};
}

// Where the item is now, if it is anywhere: also where it was moved to and then saved by replacing it.
std::optional<std::string> PresentedItem::placeOfItem() const
{
    auto place = item_.isOpen() ? linkText("/proc/self/fd/" + std::to_string(item_.get())) : std::nullopt;
    if (place && place->ends_with(kDeleted))
        place->resize(place->size() - kDeleted.size());
    struct stat ignored = {};
    if (!place || isHidden(*place) || ::lstat(place->c_str(), &ignored) != 0)
        return std::nullopt;
    const auto url = URL::file(*place);
    if (!isPlaceholderName(url.lastPathComponent()))
        return place;
    const auto record = readPlaceholder(url);
    return record ? std::optional(url.deletingLastPathComponent().appending(record->name).path()) : std::nullopt;
}

} // namespace tessel
