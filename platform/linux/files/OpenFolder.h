#pragma once

#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/files/FolderMonitor.h"
#include "platform/linux/files/LinuxFolderReader.h"

#include <sys/types.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace tessel {

class FolderListing;

/// One folder being read and watched: what its reading on the main thread and its tasks on the workers share.
///
/// At most one task at a time follows the folder, and one fetches details. No descriptor is kept open between tasks;
/// each opens the path anew and finds out whether it still leads to the same folder. While the main thread has not
/// taken what it was told, the folder is not followed: news are gathered, and the tasks for the main thread stay few.
class OpenFolder final : public FolderMonitor::Listener, public std::enable_shared_from_this<OpenFolder> {
public:
    OpenFolder(const URL&, FolderReadingClient, const FolderServices&, FolderMonitor&, OperationQueue&);

    // On the main thread.

    void begin();
    void end();
    void fetchDetails(std::vector<URL> items);
    [[nodiscard]] bool isFetchingDetails() const { return !ended_ && detailsToCome_ > 0; }
    [[nodiscard]] bool isCatchingUp();

    /// On the monitor's thread.
    void folderChanged(FolderNews) override;

private:
    struct Identity {
        dev_t device = 0;
        ino_t inode = 0;
        std::int64_t modificationTime = 0; ///< nanoseconds

        [[nodiscard]] bool isSameFolder(const Identity& other) const
        {
            return device == other.device && inode == other.inode;
        }
    };

    // On a worker.
    void read();
    [[nodiscard]] int readFirstTime(int folder);
    void followSoon();
    void followNews();
    [[nodiscard]] bool follow(const FolderNews&);
    void readAnew();
    [[nodiscard]] int readAnew(int folder);
    void setFailing(int error);
    [[nodiscard]] bool lookAt(int folder, const std::set<std::string>& names);
    void lookLater(std::set<std::string> names);
    [[nodiscard]] std::set<std::string> itemNames(const std::set<std::string>& fileNames);
    [[nodiscard]] std::optional<FolderChange> lookAt(int folder, const std::string& name) const;
    void fetchNextDetails();
    bool watchContents(const URL& item);
    static Identity identityOf(int folder);

    /// Whether nothing follows what is told.
    enum class Last { No, Yes };
    template <typename... Parameters>
    using Callback = std::function<void(Parameters...)> FolderReadingClient::*;
    template <typename... Parameters, typename... Arguments>
    void tell(Callback<Parameters...>, Last, Arguments...);
    void wasTaken();

    const URL url_;
    const FolderReadingClient client_; ///< called on the main thread only
    const FolderServices services_;
    FolderMonitor& monitor_;
    OperationQueue& workers_;

    std::atomic<bool> ended_ = false; ///< set on the main thread: nothing is told any more
    std::size_t detailsToCome_ = 0;   ///< main thread only
    std::uint64_t detailsRound_ = 0;  ///< main thread only

    Identity identity_;                               ///< of the task that follows the folder
    std::map<std::string, std::string> placeholders_; ///< names of items by those of their placeholders; likewise

    bool isFailing_ = false; ///< it exists but cannot be read; of the task that follows the folder

    std::size_t watchedInside_ = 0; ///< folders in this one; of the task that fetches details

    std::mutex mutex_;
    FolderNews news_;
    bool isFollowing_ = true;
    std::size_t toldButNotTaken_ = 0; ///< by the main thread
    std::vector<URL> wantedDetails_;  ///< the next one last
    std::uint64_t wantedRound_ = 0;
    bool isFetching_ = false;
};

} // namespace tessel
