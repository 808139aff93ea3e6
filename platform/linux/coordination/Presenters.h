#pragma once

#include "platform/linux/coordination/Answers.h"
#include "platform/linux/coordination/Notice.h"
#include "platform/linux/coordination/PresentedItem.h"

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace tessel {

class UnifiedLog;

/// The presenters of this process. Safe from any thread.
class Presenters {
public:
    Presenters(MainQueue&, UnifiedLog&);
    ~Presenters();

    /// @param path of what it presents, links on the way resolved
    void add(FilePresenter&, std::string path);
    void remove(const FilePresenter&);
    [[nodiscard]] bool isEmpty() const;

    /// Tells those who present the item of a notice, something in it, or a folder around it.
    /// @param asker is not told; may be null
    /// @param answers come to owe what the notice wants to be answered
    void tell(const Notice&, const FilePresenter* asker, const std::shared_ptr<Answers>& answers);

    /// What somebody presents who is about to write it; none for null, and for who presents nothing.
    [[nodiscard]] std::shared_ptr<PresentedItem> itemOf(const FilePresenter*) const;

private:
    using Items = std::vector<std::shared_ptr<PresentedItem>>;

    [[nodiscard]] Items items() const;
    static void tellOne(PresentedItem&, const Notice&, bool silently, const std::shared_ptr<Answers>&);
    static void tellOneAround(PresentedItem&, const Notice&, const std::shared_ptr<Answers>&);

    MainQueue& mainQueue_;
    UnifiedLog& log_;
    mutable std::mutex mutex_;               ///< of what follows
    std::unique_ptr<FolderMonitor> monitor_; ///< from the first presenter on
    Items items_;
};

} // namespace tessel
