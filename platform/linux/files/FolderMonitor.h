#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

struct inotify_event;

namespace tessel {

class UnifiedLog;

/// What has happened to a folder since its listener was last told.
struct FolderNews {
    std::set<std::string> names; ///< that came, went or changed
    bool readAnew = false;       ///< more has changed than `names` says
    bool removed = false;        ///< the folder itself is gone
    bool mayHaveMoved = false;   ///< it, or a folder above it
    bool mayHaveChanged = false; ///< it cannot be watched; time to look at its modification time

    [[nodiscard]] bool empty() const
    {
        return names.empty() && !readAnew && !removed && !mayHaveMoved && !mayHaveChanged;
    }
    /// @param namesLimit more names than this are not kept: the folder is to be read anew
    void add(FolderNews, std::size_t namesLimit);
};

/// Watches folders with one inotify descriptor and one thread.
///
/// Seen are changes of the items directly in a folder, by any program on this machine; its own removal and move; moves
/// of every folder on its path; and, where asked for, items that come to a folder in it or leave it. Not seen are
/// changes made on another machine to a network file system, changes through memory maps, and a folder that is hidden
/// by mounting over one above it. A folder for which the system has no watch left is looked at every two seconds
/// instead, where a changed content or attribute of an item goes unseen. When the system has no thread left for the
/// monitor, nothing is watched.
class FolderMonitor {
public:
    /// Told on the monitor's thread, at once when nothing was told for a while, else gathered for 75 milliseconds.
    class Listener {
    public:
        virtual ~Listener() = default;
        virtual void folderChanged(FolderNews) = 0;
    };

    /// @param changedNamesLimit more names than this at once are told as `readAnew`
    FolderMonitor(UnifiedLog&, std::size_t changedNamesLimit);
    ~FolderMonitor();

    /// Begins to watch. What happens after this returned is told. Safe from any thread.
    /// @param folder its open descriptor, which is not needed later
    /// @param path of the same folder, absolute
    void watch(int folder, const std::string& path, const std::shared_ptr<Listener>&);
    /// Also tells the name of a folder in a watched one when items come to it or leave it, gathered for half a second:
    /// how many it holds is all that shows. Safe from any thread.
    /// @returns whether that is new; not when it is told already, and not when no watch is left
    bool watchContents(const std::string& path, const Listener&);
    /// Watches the folders above a watched one again, for they may have become others. Safe from any thread.
    void watchFoldersAbove(const std::string& path, const Listener&);
    /// Whether to tell a listener every two seconds that its folder may have changed, though it is watched: for what no
    /// watch tells. Safe from any thread.
    void lookNowAndThen(const Listener&, bool);
    /// Whether something that has happened until now is still to be told to a listener, or may be. Never waits. Safe
    /// from any thread.
    [[nodiscard]] bool hasNewsFor(const Listener&);
    [[nodiscard]] std::size_t changedNamesLimit() const { return changedNamesLimit_; }
    /// The listener may still be told of what is on its way. Safe from any thread.
    void unwatch(const Listener&);

    /// Ends the thread; no listener is told any more.
    void finish();

private:
    using Time = std::chrono::steady_clock::time_point;

    struct Watcher {
        std::weak_ptr<Listener> listener;
        FolderNews news;
        Time due{};  ///< of the news
        Time told{}; ///< when news were last told
        bool hasNoWatch = false;
        bool isLookedAt = false; ///< though it may have a watch
        Time nextPoll{};

        [[nodiscard]] bool isPolled() const { return hasNoWatch || isLookedAt; }
    };
    /// Why somebody is interested in a watched folder.
    struct Interest {
        enum class Role { FolderItself, FolderAbove, FolderInside };

        const Listener* listener;
        Role role;
        std::string name; ///< of the next folder on the way down, for one above; its own, for one inside

        friend bool operator==(const Interest&, const Interest&) = default;
    };

    bool watchFolder(int folder, const Listener&);
    void addFoldersAbove(std::string path, const Listener&);
    /// @returns whether it is new
    bool addInterest(const std::string& path, std::uint32_t mask, Interest);
    void beginPolling(Watcher&);
    void run();
    [[nodiscard]] int waitingTime();
    void readEvents();
    void handle(const inotify_event&);
    void tell(const Interest&, const inotify_event&);
    void tellOfItself(Watcher&, const inotify_event&, const std::string& name);
    void addNews(Watcher&, FolderNews, Time due);
    static Time soon(const Watcher&);
    void tellWhatIsDue();

    UnifiedLog& log_;
    const std::size_t changedNamesLimit_;
    const FileDescriptor events_;
    const FileDescriptor wake_;
    std::mutex mutex_;
    std::map<const Listener*, Watcher> watchers_;
    std::unordered_map<int, std::vector<Interest>> interests_; ///< by watch descriptor
    bool isTelling_ = false;
    bool stopping_ = false;
    std::thread thread_;
    const bool hasThread_;
};

} // namespace tessel
