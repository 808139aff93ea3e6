#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <chrono>
#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>

struct inotify_event;

namespace tessel {

class UnifiedLog;

/// Tells what changes in many folders, by one inotify instance. It takes no more than half of the watches that the user
/// may have, for other programs need some, too. One thread.
class FolderWatches {
public:
    /// What may have changed.
    struct News {
        std::map<std::string, std::set<std::string>> names; ///< by folder; no name for all that is in it
        bool all = false;                                   ///< too much to tell
    };

    /// @param most the most folders that are watched
    explicit FolderWatches(UnifiedLog&, std::size_t most = affordable());

    /// Watches a folder, before it is read; one that is watched already under the name that it has now.
    void watch(const std::string& folder);
    [[nodiscard]] bool isWatched(const std::string& folder) const { return watches_.contains(folder); }
    /// Watches a folder and all below it no more.
    void forget(const std::string& folder);
    /// Whether there was no watch left for some folder.
    [[nodiscard]] bool isIncomplete() const { return isIncomplete_; }

    /// Waits until there are news to take, the descriptor can be read, or so much time has passed.
    /// @param wake not read here
    /// @param milliseconds negative for ever
    void wait(int wake, int milliseconds);
    /// Gathered for a moment, so that many changes are told together; none until then.
    [[nodiscard]] std::optional<News> takeNews();

    [[nodiscard]] static std::size_t affordable();

private:
    using Time = std::chrono::steady_clock::time_point;

    void remember(const std::string& folder, int watch);
    void readEvents();
    void handle(const inotify_event&);
    void add(const std::string& folder, const char* name);
    [[nodiscard]] bool hasNews() const { return news_.all || !news_.names.empty(); }

    UnifiedLog& log_;
    const std::size_t most_;
    const FileDescriptor events_;
    std::map<std::string, int> watches_; ///< by path
    std::unordered_map<int, std::map<std::string, int>::iterator> folders_;
    News news_;
    Time due_{};
    Time taken_{};
    bool isIncomplete_ = false;
};

} // namespace tessel
