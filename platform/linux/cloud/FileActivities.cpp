#include "platform/linux/cloud/FileActivities.h"

#include "platform/base/KeyedArchive.h"
#include "platform/cloud/CloudService.h"
#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/files/AtomicFile.h"
#include "platform/linux/files/Uninterrupted.h"
#include "platform/log/UnifiedLog.h"
#include "platform/text/GeneralError.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>

namespace tessel {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostBytes = 64 * 1024;
// How long another process may take between writing its file and locking it.
constexpr auto kLongestBeginning = std::chrono::minutes(1);

std::optional<Error> makeFolder(const URL& folder)
{
    if (::mkdir(folder.path().c_str(), S_IRWXU) == 0 || errno == EEXIST)
        return std::nullopt;
    return errnoError(errno, folder);
}

// Waits for another instance that is just asking.
FileDescriptor locked(const URL& file)
{
    FileDescriptor descriptor(::open(file.path().c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    if (descriptor.isOpen())
        (void)uninterrupted([&] { return ::flock(descriptor.get(), LOCK_EX); });
    return descriptor;
}

/// Whether a running program has the file.
bool isCurrent(const URL& file)
{
    const FileDescriptor descriptor(::open(file.path().c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    return descriptor.isOpen() && ::flock(descriptor.get(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

// What programs that were killed have left.
void removeAbandoned(const URL& folder)
{
    removeAbandonedTemporaryFiles(folder);
    std::error_code ended;
    for (fs::directory_iterator entry(folder.path(), ended); !ended && entry != fs::directory_iterator();
         entry.increment(ended)) {
        std::error_code isGone;
        const auto written = entry->last_write_time(isGone);
        if (!isGone && written < fs::file_time_type::clock::now() - kLongestBeginning &&
            !isCurrent(URL::file(entry->path().string())))
            ::unlink(entry->path().c_str());
    }
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
    if (!written_.isOpen())
        removeAbandoned(folder_);
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

std::optional<URL> FileActivities::newestFileOfOthers() const
{
    std::optional<URL> newest;
    fs::file_time_type newestTime;
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(folder_.path(), ignored)) {
        const auto file = URL::file(entry.path().string());
        const auto time = entry.last_write_time(ignored);
        if (file == file_ || (newest && time <= newestTime) || !isCurrent(file))
            continue;
        newest = file;
        newestTime = time;
    }
    return newest;
}

Result<ContinuationActivity> FileActivities::newestOfOthers() const
{
    const auto file = newestFileOfOthers();
    if (!file)
        return generalError(ErrorCode::kNoSuchFile);
    const auto text = readSmallFile(*file, kMostBytes);
    if (!text)
        return text.error();
    const auto value = keyedArchive::unarchived(*text);
    const auto* const entries = value ? value->get<Value::Dictionary>() : nullptr;
    const auto entry = [&](const char* key) { return entries && entries->contains(key) ? &entries->at(key) : nullptr; };
    const auto* const type = entry("type") ? entry("type")->get<std::string>() : nullptr;
    const auto* const account = entry("account") ? entry("account")->get<Data>() : nullptr;
    const auto* const information = entry("userInfo") ? entry("userInfo")->get<Value::Dictionary>() : nullptr;
    if (!type || !account || !information)
        return generalError(ErrorCode::kReadCorrupt);
    if (*account != cloud_.identityToken())
        return generalError(ErrorCode::kNoSuchFile);
    return ContinuationActivity{*type, true, *information};
}

void FileActivities::remove()
{
    if (!written_.isOpen())
        return;
    ::unlink(file_.path().c_str());
    written_ = FileDescriptor();
}

} // namespace tessel
