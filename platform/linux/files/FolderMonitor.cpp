#include "platform/linux/files/FolderMonitor.h"

#include "platform/linux/files/FolderListing.h"
#include "platform/log/UnifiedLog.h"
#include "platform/run/CurrentThread.h"
#include "platform/run/StartThread.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <climits>
#include <utility>

namespace tessel {

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

// A single change is shown at once; of many, those that belong together are still caught in one go.
constexpr auto kGatheringAfterSilence = 4ms;
constexpr auto kGathering = 75ms;
constexpr auto kGatheringOfContents = 500ms;
constexpr auto kPollingInterval = 2s;

constexpr std::uint32_t kItemEvents =
    IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_CLOSE_WRITE | IN_ATTRIB | IN_MODIFY;
constexpr std::uint32_t kContentEvents = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO;
constexpr std::uint32_t kSelfRemoved = IN_DELETE_SELF | IN_UNMOUNT | IN_IGNORED;
constexpr std::uint32_t kSelfEvents = kSelfRemoved | IN_MOVE_SELF;
constexpr std::uint32_t kFolderMask = kItemEvents | IN_DELETE_SELF | IN_MOVE_SELF;
constexpr std::uint32_t kAboveMask = IN_DELETE_SELF | IN_MOVE_SELF;
// A removed folder that some program still holds open is not reported by itself, only by the folder that it was in.
constexpr std::uint32_t kParentMask = kAboveMask | IN_DELETE;

std::string parentOf(const std::string& path)
{
    return path.substr(0, path.rfind('/'));
}

} // namespace

void FolderNews::add(FolderNews other, std::size_t namesLimit)
{
    names.merge(other.names);
    readAnew = readAnew || other.readAnew || names.size() > namesLimit;
    if (readAnew)
        names.clear();
    removed = removed || other.removed;
    mayHaveMoved = mayHaveMoved || other.mayHaveMoved;
    mayHaveChanged = mayHaveChanged || other.mayHaveChanged;
}

FolderMonitor::FolderMonitor(UnifiedLog& log, std::size_t changedNamesLimit)
    : log_(log), changedNamesLimit_(changedNamesLimit), events_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)),
      wake_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)), thread_(startThread([this] { run(); })),
      hasThread_(thread_.joinable())
{
    if (!hasThread_)
        log_.write(LogLevel::Error, "No thread left for %@: changes of folders go unseen", StaticText("watching"));
}

FolderMonitor::~FolderMonitor()
{
    finish();
}

void FolderMonitor::finish()
{
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    ::eventfd_write(wake_.get(), 1);
    if (thread_.joinable())
        thread_.join();
}

void FolderMonitor::watch(int folder, const std::string& path, const std::shared_ptr<Listener>& listener)
{
    if (!hasThread_)
        return;
    const std::lock_guard lock(mutex_);
    auto& watcher = watchers_[listener.get()];
    watcher.listener = listener;
    if (!watchFolder(folder, *listener)) {
        log_.write(LogLevel::Warning, "No watch left for folder '%@': looking at it now and then", path);
        watcher.hasNoWatch = true;
        beginPolling(watcher);
    }
    addFoldersAbove(path, *listener);
}

void FolderMonitor::watchFoldersAbove(const std::string& path, const Listener& listener)
{
    const std::lock_guard lock(mutex_);
    if (watchers_.contains(&listener))
        addFoldersAbove(path, listener);
}

void FolderMonitor::lookNowAndThen(const Listener& listener, bool isLookedAt)
{
    const std::lock_guard lock(mutex_);
    const auto found = watchers_.find(&listener);
    if (found == watchers_.end())
        return;
    found->second.isLookedAt = isLookedAt;
    if (isLookedAt)
        beginPolling(found->second);
}

bool FolderMonitor::hasNewsFor(const Listener& listener)
{
    const std::unique_lock lock(mutex_, std::try_to_lock);
    int unread = 0;
    if (!lock || isTelling_ || (::ioctl(events_.get(), FIONREAD, &unread) == 0 && unread > 0))
        return true;
    const auto found = watchers_.find(&listener);
    return found != watchers_.end() && !found->second.news.empty();
}

bool FolderMonitor::watchFolder(int folder, const Listener& listener)
{
    // By its descriptor, so that the folder watched is the very one that is read.
    return addInterest("/proc/self/fd/" + std::to_string(folder), kFolderMask,
                       {&listener, Interest::Role::FolderItself, {}});
}

void FolderMonitor::addFoldersAbove(std::string path, const Listener& listener)
{
    std::uint32_t mask = kParentMask;
    for (auto above = parentOf(path); !above.empty(); path = above, above = parentOf(path)) {
        // One that may not be watched, or only by too long a path, is left out.
        addInterest(above, mask, {&listener, Interest::Role::FolderAbove, path.substr(above.size() + 1)});
        mask = kAboveMask;
    }
}

bool FolderMonitor::watchContents(const std::string& path, const Listener& listener)
{
    const std::lock_guard lock(mutex_);
    return watchers_.contains(&listener) &&
           addInterest(path, kContentEvents,
                       {&listener, Interest::Role::FolderInside, path.substr(path.rfind('/') + 1)});
}

bool FolderMonitor::addInterest(const std::string& path, std::uint32_t mask, Interest interest)
{
    const int watch = ::inotify_add_watch(events_.get(), path.c_str(), mask | IN_ONLYDIR | IN_MASK_ADD);
    if (watch < 0)
        return false;
    auto& interests = interests_[watch];
    if (std::ranges::find(interests, interest) != interests.end())
        return false;
    interests.push_back(std::move(interest));
    return true;
}

void FolderMonitor::beginPolling(Watcher& watcher)
{
    watcher.nextPoll = steady_clock::now() + kPollingInterval;
    ::eventfd_write(wake_.get(), 1);
}

void FolderMonitor::unwatch(const Listener& listener)
{
    const std::lock_guard lock(mutex_);
    watchers_.erase(&listener);
    for (auto watched = interests_.begin(); watched != interests_.end();) {
        auto& [watch, interests] = *watched;
        std::erase_if(interests, [&](const Interest& interest) { return interest.listener == &listener; });
        if (interests.empty())
            ::inotify_rm_watch(events_.get(), watch);
        watched = interests.empty() ? interests_.erase(watched) : std::next(watched);
    }
}

void FolderMonitor::run()
{
    applyQualityOfService(QualityOfService::UserInitiated, "folder-monitor");
    while (true) {
        pollfd descriptors[] = {{events_.get(), POLLIN, 0}, {wake_.get(), POLLIN, 0}};
        ::poll(descriptors, std::size(descriptors), waitingTime());
        eventfd_t ignored = 0;
        ::eventfd_read(wake_.get(), &ignored);
        {
            const std::lock_guard lock(mutex_);
            if (stopping_)
                return;
        }
        readEvents();
        tellWhatIsDue();
    }
}

/// Milliseconds until there is something to tell; negative for ever.
int FolderMonitor::waitingTime()
{
    const std::lock_guard lock(mutex_);
    auto next = Time::max();
    for (const auto& [listener, watcher] : watchers_) {
        if (!watcher.news.empty())
            next = std::min(next, watcher.due);
        if (watcher.isPolled())
            next = std::min(next, watcher.nextPoll);
    }
    if (!wake_.isOpen()) // out of descriptors, too: look now and then whether it is time to stop
        next = std::min(next, steady_clock::now() + kPollingInterval);
    if (next == Time::max())
        return -1;
    const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(next - steady_clock::now()).count();
    return static_cast<int>(std::max<std::int64_t>(milliseconds, 0));
}

void FolderMonitor::readEvents()
{
    alignas(inotify_event) char buffer[64 * (sizeof(inotify_event) + NAME_MAX + 1)];
    while (true) {
        const std::lock_guard lock(mutex_); // so that nobody finds news neither here nor there
        const auto length = ::read(events_.get(), buffer, sizeof buffer);
        if (length <= 0)
            return;
        for (const char* next = buffer; next < buffer + length;) {
            const auto& event = *reinterpret_cast<const inotify_event*>(next);
            handle(event);
            next += sizeof event + event.len;
        }
    }
}

void FolderMonitor::handle(const inotify_event& event)
{
    if (event.mask & IN_Q_OVERFLOW) {
        for (auto& [listener, watcher] : watchers_)
            addNews(watcher, {.names = {}, .readAnew = true, .mayHaveMoved = true}, soon(watcher));
        return;
    }
    const auto watched = interests_.find(event.wd);
    if (watched == interests_.end())
        return;
    for (const auto& interest : watched->second)
        tell(interest, event);
    if (event.mask & IN_IGNORED)
        interests_.erase(watched);
}

void FolderMonitor::tell(const Interest& interest, const inotify_event& event)
{
    auto& watcher = watchers_.at(interest.listener);
    const std::string name = event.len > 0 ? event.name : "";
    switch (interest.role) {
    case Interest::Role::FolderItself:
        return tellOfItself(watcher, event, name);
    case Interest::Role::FolderAbove:
        if (event.mask & kSelfEvents || (event.mask & IN_DELETE && name == interest.name))
            addNews(watcher, {.names = {}, .mayHaveMoved = true}, soon(watcher));
        return;
    case Interest::Role::FolderInside:
        if (event.mask & kContentEvents && isListedName(name))
            addNews(watcher, {.names = {interest.name}}, steady_clock::now() + kGatheringOfContents);
        return;
    }
}

void FolderMonitor::tellOfItself(Watcher& watcher, const inotify_event& event, const std::string& name)
{
    const bool removed = event.mask & kSelfRemoved;
    if (event.mask & kSelfEvents)
        addNews(watcher, {.names = {}, .removed = removed, .mayHaveMoved = true}, soon(watcher));
    else if (name.empty()) // its own attributes: it may be readable no longer, or again
        addNews(watcher, {.names = {}, .readAnew = true}, soon(watcher));
    else if (isListedName(name))
        addNews(watcher, {.names = {name}}, soon(watcher));
}

FolderMonitor::Time FolderMonitor::soon(const Watcher& watcher)
{
    return std::max(steady_clock::now() + kGatheringAfterSilence, watcher.told + kGathering);
}

void FolderMonitor::addNews(Watcher& watcher, FolderNews news, Time due)
{
    watcher.due = watcher.news.empty() ? due : std::min(watcher.due, due);
    watcher.news.add(std::move(news), changedNamesLimit_);
}

void FolderMonitor::tellWhatIsDue()
{
    std::vector<std::pair<std::shared_ptr<Listener>, FolderNews>> telling;
    {
        const std::lock_guard lock(mutex_);
        const auto now = steady_clock::now();
        for (auto& [key, watcher] : watchers_) {
            if (watcher.isPolled() && watcher.nextPoll <= now) {
                watcher.nextPoll = now + kPollingInterval;
                addNews(watcher, {.names = {}, .mayHaveChanged = true}, now);
            }
            if (watcher.news.empty() || watcher.due > now)
                continue;
            watcher.told = now;
            if (auto listener = watcher.listener.lock())
                telling.emplace_back(std::move(listener), std::exchange(watcher.news, {}));
        }
        isTelling_ = !telling.empty();
    }
    // Without the lock, for a listener may stop watching, and this may be its last owner.
    for (auto& [listener, news] : telling)
        listener->folderChanged(std::move(news));
    const std::lock_guard lock(mutex_);
    isTelling_ = false;
}

} // namespace tessel
