#include "platform/linux/coordination/LockHolder.h"

#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <system_error>

namespace tessel {

namespace {

namespace fs = std::filesystem;

struct Range {
    std::int64_t first = 0;
    std::int64_t last = 0;

    [[nodiscard]] bool meets(const Range& other) const { return first <= other.last && other.first <= last; }
};

// Of a line such as "lock:\t1: OFDLCK  ADVISORY  WRITE -1 fe:00:1573 0 EOF" (proc_pid_fdinfo(5)).
std::optional<Range> rangeInLockLine(const std::string& line)
{
    Range range;
    char last[32] = {};
    if (std::sscanf(line.c_str(), "lock: %*d: OFDLCK %*s %*s %*d %*s %" SCNd64 " %31s", &range.first, last) != 2)
        return std::nullopt;
    range.last = std::isdigit(static_cast<unsigned char>(last[0])) ? std::strtoll(last, nullptr, 10)
                                                                   : std::numeric_limits<std::int64_t>::max();
    return range;
}

bool holdsLock(const fs::path& descriptorInfo, const Range& range)
{
    std::ifstream stream(descriptorInfo);
    for (std::string line; std::getline(stream, line);)
        if (const auto held = rangeInLockLine(line); held && held->meets(range))
            return true;
    return false;
}

bool isFile(const fs::path& path, const struct stat& wanted)
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 && status.st_dev == wanted.st_dev && status.st_ino == wanted.st_ino;
}

bool holdsLock(const fs::path& process, const struct stat& file, const Range& range)
{
    std::error_code ended;
    for (fs::directory_iterator entry(process / "fd", ended); !ended && entry != fs::directory_iterator();
         entry.increment(ended))
        if (isFile(entry->path(), file) && holdsLock(process / "fdinfo" / entry->path().filename(), range))
            return true;
    return false;
}

std::string nameOf(const fs::path& process)
{
    std::string name;
    std::getline(std::ifstream(process / "comm"), name);
    return name;
}

} // namespace

std::optional<LockHolder> findLockHolder(int file, off_t start, off_t length)
{
    struct stat status = {};
    if (::fstat(file, &status) != 0)
        return std::nullopt;
    std::error_code ended;
    for (fs::directory_iterator entry("/proc", ended); !ended && entry != fs::directory_iterator();
         entry.increment(ended)) {
        const auto number = entry->path().filename().native();
        const bool isProcess = std::ranges::all_of(number, [](char digit) { return digit >= '0' && digit <= '9'; });
        if (isProcess && holdsLock(entry->path(), status, {start, start + length - 1}))
            return LockHolder{static_cast<pid_t>(std::atoi(number.c_str())), nameOf(entry->path())};
    }
    return std::nullopt;
}

} // namespace tessel
