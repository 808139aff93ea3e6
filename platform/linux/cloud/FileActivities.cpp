#include "platform/linux/cloud/FileActivities.h"

#include "platform/base/KeyedArchive.h"
#include "platform/cloud/CloudService.h"
#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/files/AtomicFile.h"
#include "platform/log/UnifiedLog.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <string>
#include <utility>

namespace tessel {

namespace {

std::optional<Error> makeFolder(const URL& folder)
{
    if (::mkdir(folder.path().c_str(), S_IRWXU) == 0 || errno == EEXIST)
        return std::nullopt;
    return errnoError(errno, folder);
}

FileDescriptor locked(const URL& file)
{
    FileDescriptor descriptor(::open(file.path().c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    if (descriptor.isOpen())
        (void)::flock(descriptor.get(), LOCK_EX | LOCK_NB);
    return descriptor;
}

} // namespace

URL activitiesIn(const URL& home)
{
    return home.appending("activities");
}

FileActivities::FileActivities(URL folder, const CloudService& cloud, UnifiedLog& log)
    : folder_(std::move(folder)), file_(folder_.appending(std::to_string(::getpid()))), cloud_(cloud), log_(log),
      queue_(std::in_place, "orvane.TesselDriveApp.activities", QualityOfService::Utility)
{
}

FileActivities::~FileActivities()
{
    queue_.reset();
    remove();
}

void FileActivities::becomeCurrent(const std::shared_ptr<const ContinuationActivity>& activity)
{
    {
        const std::lock_guard lock(mutex_);
        current_ = activity;
        queue_->addOperation([this] { keepCurrent(); });
    }
    if (activity && becameCurrent)
        becameCurrent(*activity);
}

void FileActivities::resignCurrent(const ContinuationActivity& activity)
{
    const std::lock_guard lock(mutex_);
    if (current_.get() != &activity)
        return;
    current_.reset();
    queue_->addOperation([this] { keepCurrent(); });
}

void FileActivities::keepCurrent()
{
    std::shared_ptr<const ContinuationActivity> activity;
    {
        const std::lock_guard lock(mutex_);
        activity = current_;
    }
    const auto account = activity && activity->isEligibleForContinuation ? cloud_.identityToken() : std::nullopt;
    if (!account)
        return remove();
    auto error = makeFolder(folder_);
    if (!error)
        error = writeFileAtomically(file_, keyedArchive::archived(Value::Dictionary{
                                               {"type", activity->type},
                                               {"account", *account},
                                               {"userInfo", activity->userInfo},
                                           }));
    if (error)
        return log_.write(LogLevel::Error, "Cannot write %@: %@", file_, error);
    written_ = locked(file_);
}

void FileActivities::remove()
{
    if (!written_.isOpen())
        return;
    ::unlink(file_.path().c_str());
    written_ = FileDescriptor();
}

} // namespace tessel
