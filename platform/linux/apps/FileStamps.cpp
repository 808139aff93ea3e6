#include "platform/linux/apps/FileStamps.h"

#include <sys/stat.h>

#include <algorithm>

namespace tessel {

namespace {

constexpr std::int64_t kNanoseconds = 1'000'000'000;

std::int64_t nanoseconds(const timespec& time)
{
    return time.tv_sec * kNanoseconds + time.tv_nsec;
}

std::int64_t now()
{
    timespec time = {};
    ::clock_gettime(CLOCK_REALTIME, &time);
    return nanoseconds(time);
}

} // namespace

void FileStamps::add(std::string path)
{
    trusted_ = stamps_.empty() || trusted_;
    auto state = stateOf(path);
    if (state && state->changed > now() - kNanoseconds)
        trusted_ = false;
    stamps_.push_back({std::move(path), state});
}

bool FileStamps::areCurrent() const
{
    return trusted_ && std::all_of(stamps_.begin(), stamps_.end(),
                                   [](const Stamp& stamp) { return stateOf(stamp.path) == stamp.state; });
}

std::optional<FileStamps::State> FileStamps::stateOf(const std::string& path)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0)
        return std::nullopt;
    return State{status.st_dev, status.st_ino, nanoseconds(status.st_ctim)};
}

} // namespace tessel
