#pragma once

#include "platform/documents/SystemSearch.h"
#include "platform/linux/files/FileDescriptor.h"
#include "platform/run/MainQueue.h"
#include "platform/run/OperationQueue.h"

#include <sys/types.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>

namespace tessel {

class SearchIndex;
class TypeRegistry;
class UnifiedLog;

/// The index of a drive, made on a thread of the lowest priority and kept: all folders are looked at when it begins,
/// and watched from then on. Folders for which there is no watch are looked at once a minute. Documents that are not on
/// the device are found by their records; packages count as documents.
class DriveSearch final : public SystemSearch {
public:
    struct Services {
        MainQueue& mainQueue;
        UnifiedLog& log;
        const TypeRegistry& types;
    };

    /// The services outlive this. Made and destroyed on the main thread.
    /// @param roots the folders whose contents are found
    DriveSearch(URL indexFile, std::vector<URL> roots, const Services&);
    ~DriveSearch() override;

    void find(std::vector<std::string> words, Answer answer) override;
    [[nodiscard]] std::vector<FoundDocument> documents(const std::vector<std::string>& identifiers) const override;

    /// Brings the index to what is there now, on the thread that calls, where no other does. For tests and
    /// measurements.
    void refresh();

private:
    /// A connection of its own for each thread that asks.
    struct Reader {
        std::mutex mutex;
        std::unique_ptr<SearchIndex> index;
        ino_t inode = 0; ///< of the file that it has open
    };
    /// Asks the index, as long as there is one.
    template <typename Question>
    void ask(Reader&, const Question&) const;
    [[nodiscard]] std::unique_ptr<SearchIndex> open() const;

    void keep();
    enum class Until { Quiet, TheEnd };
    [[nodiscard]] bool follow(Until);
    void setAside(ino_t) const;
    void pause() const;

    const URL file_;
    const std::vector<URL> roots_;
    const Services services_;
    std::atomic<bool> ends_ = false;
    const FileDescriptor wake_; ///< of the thread
    mutable std::mutex opening_;
    mutable Reader finding_;
    mutable Reader describing_;
    OperationQueue answering_{"orvane.TesselDriveApp.searching", QualityOfService::UserInitiated};
    MainQueue::DelayedTask beginning_; ///< the start has other things to do
    std::thread indexing_;
};

} // namespace tessel
