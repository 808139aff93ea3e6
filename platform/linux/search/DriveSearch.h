#pragma once

#include "platform/documents/SystemSearch.h"
#include "platform/run/OperationQueue.h"
#include "platform/run/RepeatingTimer.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>

namespace tessel {

class SearchIndex;
class TypeRegistry;
class UnifiedLog;

/// The index of a drive, made on a thread of low priority and kept: every minute, and when it is asked to, it looks at
/// all folders' times of change and reads those again that have another one. Documents that are not on the device are
/// found by their records; packages count as documents.
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

    void find(std::vector<std::string> words, Answer) override;
    [[nodiscard]] std::vector<FoundDocument> documents(const std::vector<std::string>& identifiers) const override;

    /// Looks at all folders, on the thread that calls. For tests and measurements, too.
    void refresh();

private:
    [[nodiscard]] const SearchIndex* reader() const;
    void lookAt(SearchIndex&, const std::string& folder, std::vector<std::string>& pending);

    const URL file_;
    const std::vector<URL> roots_;
    const Services services_;
    std::atomic<bool> ends_ = false;
    mutable std::mutex mutex_;                    ///< of the next
    mutable std::unique_ptr<SearchIndex> reader_; ///< answers questions
    OperationQueue reading_{"orvane.TesselDriveApp.indexing", QualityOfService::Background};
    OperationQueue answering_{"orvane.TesselDriveApp.searching", QualityOfService::UserInitiated};
    class Queue;
    std::unique_ptr<Queue> queue_;
    MainQueue::DelayedTask beginning_; ///< the start has other things to do
    std::optional<RepeatingTimer> timer_;
};

} // namespace tessel
