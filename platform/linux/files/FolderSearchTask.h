#pragma once

#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/files/LinuxFolderReader.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <queue>
#include <string>
#include <vector>

namespace tessel {

/// One search below some folders: nearer items are found before deeper ones. Shared by its owner on the main thread and
/// the worker that runs it.
class FolderSearchTask : public std::enable_shared_from_this<FolderSearchTask> {
public:
    FolderSearchTask(const std::vector<URL>& folders, std::string_view query, SearchClient, const FolderServices&);

    /// Searches; on a worker, once.
    void run();
    /// Ends it at once; on the main thread.
    void end() { ended_ = true; }

private:
    void searchFolder(const URL&);
    [[nodiscard]] FileDescriptor open(const URL&) const;
    void look(int folder, const URL&, std::string_view fileName);
    void consider(const URL& folder, std::string_view name, const FolderEntry&);
    void deliver();
    void tellFound();

    const std::string query_; ///< search-folded
    const SearchClient client_;
    const FolderServices services_;
    std::atomic<bool> ended_ = false;
    std::atomic<bool> isDelivering_ = false; ///< hits are on their way to the main thread

    // On the worker.
    std::queue<URL> folders_; ///< still to be searched
    FileDescriptor previous_; ///< the folder searched last
    std::optional<URL> previousURL_;
    std::vector<SearchHit> hits_;
    std::chrono::steady_clock::time_point delivered_ = std::chrono::steady_clock::now();
};

} // namespace tessel
