#include "platform/linux/log/RotatedFileSink.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cstdio>
#include <ctime>

namespace tessel {

namespace {

/// ISO 8601, UTC, with milliseconds.
std::string isoTime(const Date& date)
{
    constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
    const std::time_t seconds = date.nanoseconds / kNanosecondsPerSecond;
    const auto milliseconds = static_cast<int>(date.nanoseconds % kNanosecondsPerSecond / 1'000'000);
    std::tm utc = {};
    ::gmtime_r(&seconds, &utc);
    char text[32];
    const auto length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &utc);
    std::snprintf(text + length, sizeof text - length, ".%03dZ", milliseconds);
    return text;
}

/// Makes the folders above a file, for the user alone; those that exist stay as they are.
void makeFoldersAbove(const std::string& path)
{
    for (auto slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1))
        ::mkdir(path.substr(0, slash).c_str(), S_IRWXU);
}

} // namespace

void RotatedFileSink::write(const Date& date, LogLevel, std::string_view line)
{
    const auto text = isoTime(date).append(1, ' ').append(line).append(1, '\n');
    openAnewIfNeeded(text.size());
    if (!file_.isOpen())
        return;
    // One call a line: with O_APPEND the lines of several programs do not mix.
    [[maybe_unused]] const auto lostOnAFullDisk = ::write(file_.get(), text.data(), text.size());
}

void RotatedFileSink::open()
{
    constexpr int kFlags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC;
    constexpr mode_t kUserOnly = S_IRUSR | S_IWUSR;
    file_ = FileDescriptor(::open(path_.c_str(), kFlags, kUserOnly));
    if (file_.isOpen())
        return;
    makeFoldersAbove(path_);
    file_ = FileDescriptor(::open(path_.c_str(), kFlags, kUserOnly));
}

void RotatedFileSink::openAnewIfNeeded(std::size_t additionalSize)
{
    struct stat status = {};
    if (::fstat(file_.get(), &status) != 0 || status.st_nlink == 0) {
        open(); // for the first time, or after somebody removed the file
    } else if (S_ISREG(status.st_mode) && static_cast<std::size_t>(status.st_size) + additionalSize > kRotationSize) {
        rotate();
        open();
    }
}

void RotatedFileSink::rotate() const
{
    // Whoever gets the lock first rotates; all others then find another file under the name and leave it alone.
    if (::flock(file_.get(), LOCK_EX | LOCK_NB) != 0)
        return;
    struct stat ours = {};
    struct stat named = {};
    if (::fstat(file_.get(), &ours) == 0 && ::stat(path_.c_str(), &named) == 0 && ours.st_ino == named.st_ino &&
        ours.st_dev == named.st_dev)
        ::rename(path_.c_str(), (path_ + ".1").c_str());
}

} // namespace tessel
