#include "platform/linux/search/FolderWatches.h"

#include "platform/linux/files/FolderListing.h"
#include "platform/log/UnifiedLog.h"

#include <poll.h>
#include <sys/inotify.h>

#include <algorithm>
#include <climits>
#include <fstream>

namespace tessel {

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr auto kGathering = 200ms;
constexpr auto kBetweenNews = 500ms;
constexpr std::size_t kMostNames = 500;    ///< of one folder
constexpr std::size_t kMostFolders = 2000; ///< with news
constexpr std::uint32_t kMask = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_CLOSE_WRITE | IN_ATTRIB |
                                IN_MOVE_SELF | IN_ONLYDIR | IN_DONT_FOLLOW;

} // namespace

std::size_t FolderWatches::affordable()
{
    std::size_t most = 8192; // the least that any kernel allows by itself
    std::ifstream("/proc/sys/fs/inotify/max_user_watches") >> most;
    return most / 2;
}

FolderWatches::FolderWatches(UnifiedLog& log, std::size_t most)
    : log_(log), most_(most), events_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
}

void FolderWatches::watch(const std::string& folder)
{
    const bool isFull = watches_.size() >= most_ && !watches_.contains(folder);
    const int watch = isFull ? -1 : ::inotify_add_watch(events_.get(), folder.c_str(), kMask);
    if (watch >= 0)
        return remember(folder, watch);
    forget(folder);
    if (!isFull && (errno == ENOENT || errno == ENOTDIR || errno == EACCES))
        return; // gone, or nobody's to read
    if (!std::exchange(isIncomplete_, true))
        log_.write(LogLevel::Warning, "%d folders are watched for the search: the others are looked at once a minute",
                   watches_.size());
}

/// One folder has one name, and a name one folder: of two that have changed places, neither keeps what it was.
void FolderWatches::remember(const std::string& folder, int watch)
{
    if (const auto other = watches_.find(folder); other != watches_.end() && other->second != watch) {
        ::inotify_rm_watch(events_.get(), other->second);
        folders_.erase(other->second);
        watches_.erase(other);
    }
    if (const auto before = folders_.find(watch); before != folders_.end() && before->second->first != folder)
        watches_.erase(before->second);
    folders_[watch] = watches_.try_emplace(folder, watch).first;
}

void FolderWatches::forget(const std::string& folder)
{
    const auto erase = [this](std::map<std::string, int>::iterator watch) {
        ::inotify_rm_watch(events_.get(), watch->second);
        folders_.erase(watch->second);
        return watches_.erase(watch);
    };
    if (const auto itself = watches_.find(folder); itself != watches_.end())
        erase(itself);
    const auto below = folder + '/';
    for (auto next = watches_.lower_bound(below); next != watches_.end() && next->first.starts_with(below);)
        next = erase(next);
}

void FolderWatches::wait(int wake, int milliseconds)
{
    if (hasNews()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(due_ - steady_clock::now()).count();
        const auto most = milliseconds < 0 ? left : std::min<std::int64_t>(left, milliseconds);
        milliseconds = static_cast<int>(std::max<std::int64_t>(most, 0));
    }
    pollfd descriptors[] = {{events_.get(), POLLIN, 0}, {wake, POLLIN, 0}};
    ::poll(descriptors, std::size(descriptors), milliseconds);
    readEvents();
}

std::optional<FolderWatches::News> FolderWatches::takeNews()
{
    const auto now = steady_clock::now();
    if (!hasNews() || due_ > now)
        return std::nullopt;
    taken_ = now;
    return std::exchange(news_, {});
}

void FolderWatches::readEvents()
{
    alignas(inotify_event) char buffer[64 * (sizeof(inotify_event) + NAME_MAX + 1)];
    while (true) {
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

void FolderWatches::handle(const inotify_event& event)
{
    if (event.mask & IN_Q_OVERFLOW)
        return add({}, nullptr);
    const auto watched = folders_.find(event.wd);
    if (watched == folders_.end())
        return;
    const auto place = watched->second;
    if (event.mask & IN_IGNORED) {
        watches_.erase(place);
        folders_.erase(watched);
    } else if (event.mask & IN_MOVE_SELF) {
        add(place->first, ""); // what is there now is looked at, and the new place is told by the folder that it is in
    } else if (event.len == 0 || isListedName(event.name)) {
        add(place->first, event.len == 0 ? "" : event.name);
    }
}

/// @param name empty for all in the folder; null for all folders
void FolderWatches::add(const std::string& folder, const char* name)
{
    if (!hasNews())
        due_ = std::max(steady_clock::now() + kGathering, taken_ + kBetweenNews);
    if (!name || news_.all || news_.names.size() >= kMostFolders) {
        news_ = {.names = {}, .all = true};
        return;
    }
    const auto [found, isNew] = news_.names.try_emplace(folder);
    auto& names = found->second;
    if (!isNew && names.empty())
        return;
    if (*name == '\0' || names.size() >= kMostNames)
        names.clear();
    else
        names.insert(name);
}

} // namespace tessel
