#pragma once

#include "platform/files/FilePresenter.h"
#include "platform/linux/coordination/Answers.h"
#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/files/FolderMonitor.h"
#include "platform/linux/files/ItemStamp.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace tessel {

class MainQueue;

/// One presenter and the item that it presents, which is followed wherever it goes, whoever moves it. A document is the
/// same item whether its content is on the device or not. Safe from any thread.
class PresentedItem : public std::enable_shared_from_this<PresentedItem> {
public:
    using Work = std::function<void(FilePresenter&)>;
    using AskingWork = std::function<void(FilePresenter&, const std::shared_ptr<Answers::Owed>&)>;

    /// @param path absolute, links on the way resolved
    PresentedItem(FilePresenter&, std::string path, MainQueue&, FolderMonitor&);
    ~PresentedItem();
    PresentedItem(const PresentedItem&) = delete;
    PresentedItem& operator=(const PresentedItem&) = delete;

    /// Begins to look for changes by programs that do not coordinate.
    void follow();
    /// Nothing is told any more once this has returned, but for what calls it itself.
    void end();

    [[nodiscard]] bool belongsTo(const FilePresenter& presenter) const { return &presenter_ == &presenter; }
    [[nodiscard]] std::string path() const;

    /// Runs work on the presenter's queue.
    void tell(const Work&);
    void ask(const std::shared_ptr<Answers::Owed>&, const AskingWork&);

    /// While the presenter itself writes it looks at no changes: it is told of none of its own.
    void beginOwnAccess() { ++ownAccesses_; }
    void endOwnAccess() { --ownAccesses_; }

    /// The item will be elsewhere soon, so that its absence means nothing for some seconds.
    void expectMove();
    /// The item has moved. @param silently without telling the presenter
    void takeMove(const std::string& to, bool silently);
    /// The item may have changed: tells the presenter if it has. Its absence is taken as known.
    void takeChange(bool silently);

private:
    class Listener;

    /// What tells one state of the item from another.
    struct Sight {
        ItemStamp stamp;
        std::int64_t statusChanged = 0; ///< attributes count

        friend bool operator==(const Sight&, const Sight&) = default;
    };

    void lookAgain(bool isInside);
    void judgeAbsenceLater();
    void judgeAbsence();
    void watchAnew();
    void watch();
    void unwatch();
    [[nodiscard]] std::optional<Sight> sight() const;
    [[nodiscard]] std::optional<std::string> placeOfItem() const;

    FilePresenter& presenter_;
    MainQueue& mainQueue_;
    FolderMonitor& monitor_;
    std::mutex askingMutex_;  ///< held while an operation is added to the presenter's queue
    std::mutex tellingMutex_; ///< held while the presenter is told something
    std::atomic<std::thread::id> telling_{};
    std::atomic<bool> hasEnded_ = false;
    std::atomic<int> ownAccesses_ = 0;
    mutable std::mutex mutex_; ///< of all that follows
    std::string path_;
    FileDescriptor item_; ///< leads to it wherever it goes
    std::optional<Sight> sight_;
    bool isJudging_ = false;
    std::chrono::steady_clock::time_point moveExpectedUntil_{};
    std::shared_ptr<Listener> around_; ///< listens to the folder that it is in
    std::shared_ptr<Listener> inside_; ///< listens to the item, when it is a folder
};

} // namespace tessel
