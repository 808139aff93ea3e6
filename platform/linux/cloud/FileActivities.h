#pragma once

#include "platform/base/URL.h"
#include "platform/cloud/ActivityService.h"
#include "platform/linux/files/FileDescriptor.h"
#include "platform/run/OperationQueue.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace tessel {

class CloudService;
class UnifiedLog;

/// The folder of a home's current activities.
[[nodiscard]] URL activitiesIn(const URL& home);

/// Keeps this process's current activity where the other instances on the same home find it: in a file of its own,
/// named after the process, locked (flock) as long as it counts, so that what a dead process left behind is known for
/// it. The file is an archived dictionary:
///
///     type      the activity's type
///     account   the identity token of the account that was signed in
///     userInfo  what the activity holds
///
/// What is not to be continued elsewhere, or by nobody's account, is not kept. Files are written on a thread of the
/// service's own, and removed at its end at the latest.
class FileActivities final : public ActivityService {
public:
    /// The services outlive this one. @param folder made with the first activity
    FileActivities(URL folder, const CloudService&, UnifiedLog&);
    ~FileActivities() override;

    /// Told of each activity that becomes current, on the thread that says so.
    std::function<void(const ContinuationActivity&)> becameCurrent;

    void becomeCurrent(const std::shared_ptr<const ContinuationActivity>&) override;
    void resignCurrent(const ContinuationActivity&) override;
    [[nodiscard]] Result<ContinuationActivity> newestOfOthers() const override;

private:
    void keepCurrent();
    void remove();
    [[nodiscard]] std::optional<URL> newestFileOfOthers() const;

    const URL folder_;
    const URL file_;
    const CloudService& cloud_;
    UnifiedLog& log_;
    std::mutex mutex_;
    std::shared_ptr<const ContinuationActivity> current_;
    FileDescriptor written_;              ///< holds the lock; the queue's operations alone use it
    std::optional<OperationQueue> queue_; ///< none while this ends
};

} // namespace tessel
