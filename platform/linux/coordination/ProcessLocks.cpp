#include "platform/linux/coordination/ProcessLocks.h"

#include "platform/linux/files/Uninterrupted.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <random>
#include <thread>

namespace tessel {

namespace {

// The file's first bytes are marks; then come the nodes' ranges; then, as far behind, the same once more for those who
// stand in line. In each range the first byte is for whoever reads or writes the item or something below it, and the
// others are for those who write something below it, one byte each.
constexpr off_t kSomebodyWaits = 0;
constexpr off_t kSomebodyListens = 1;
constexpr off_t kLine = kLockNodesEnd;

constexpr std::chrono::microseconds kShortestPause(200);
constexpr std::chrono::microseconds kLongestPause(5000);

struct flock request(int type, off_t start, off_t length)
{
    struct flock lock = {};
    lock.l_type = static_cast<short>(type);
    lock.l_whence = SEEK_SET;
    lock.l_start = start;
    lock.l_len = length;
    return lock;
}

enum class Outcome { Locked, InUse, Impossible };

Outcome lockRange(int file, struct flock lock)
{
    if (uninterrupted([&] { return ::fcntl(file, F_OFD_SETLK, &lock); }) == 0)
        return Outcome::Locked;
    return errno == EAGAIN || errno == EACCES ? Outcome::InUse : Outcome::Impossible;
}

// The lock of another one that stands in the way of this one.
std::optional<struct flock> obstacleOf(int file, struct flock lock)
{
    const bool isKnown = ::fcntl(file, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
    return isKnown ? std::optional(lock) : std::nullopt;
}

bool isLocked(int file, off_t start, off_t length)
{
    return obstacleOf(file, request(F_WRLCK, start, length)).has_value();
}

off_t anyPlaceForAWriterBelow()
{
    thread_local std::minstd_rand random{std::random_device()()};
    return std::uniform_int_distribution<off_t>(1, kLockNodeLength - 1)(random);
}

struct flock requestFor(const LockNode& node, off_t area)
{
    const auto start = area + node.start;
    switch (node.mode) {
    case LockMode::ReadsBelow:
        return request(F_RDLCK, start, 1);
    case LockMode::WritesBelow:
        return request(F_WRLCK, start + anyPlaceForAWriterBelow(), 1);
    case LockMode::Reads:
        return request(F_RDLCK, start, kLockNodeLength);
    case LockMode::Writes:
        break;
    }
    return request(F_WRLCK, start, kLockNodeLength);
}

// All of them or none.
Outcome lockAll(int file, const std::vector<LockNode>& nodes, off_t area)
{
    auto outcome = Outcome::Locked;
    // The item itself first: that is where most wait.
    for (auto node = nodes.rbegin(); node != nodes.rend() && outcome == Outcome::Locked; ++node)
        outcome = lockRange(file, requestFor(*node, area));
    if (outcome == Outcome::InUse)
        (void)lockRange(file, request(F_UNLCK, area + kFirstLockNode, kLockNodesEnd - kFirstLockNode));
    return outcome;
}

} // namespace

ProcessLocks::ProcessLocks(const URL& folder, const Clock& clock)
    : folder_(folder), path_(folder.appending("locks").path()), clock_(clock), marks_(open())
{
}

FileDescriptor ProcessLocks::open() const
{
    // The sticky bit keeps a file in a runtime folder from being cleaned up (XDG Base Directory, freedesktop).
    const auto open = [&] { return ::open(path_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 01600); };
    FileDescriptor file(uninterrupted(open));
    if (!file.isOpen() && errno == ENOENT && ::mkdir(folder_.path().c_str(), 0700) == 0)
        file = FileDescriptor(uninterrupted(open));
    return file;
}

FileDescriptor ProcessLocks::listen() const
{
    auto file = open();
    if (file.isOpen())
        (void)lockRange(file.get(), request(F_RDLCK, kSomebodyListens, 1));
    return file;
}

// One question to the kernel while there is neither, which is nearly always.
ProcessLocks::Marks ProcessLocks::marks() const
{
    const int file = marks_.get();
    if (!marks_.isOpen() || !isLocked(file, kSomebodyWaits, kSomebodyListens + 1))
        return {};
    return {isLocked(file, kSomebodyWaits, 1), isLocked(file, kSomebodyListens, 1)};
}

std::optional<ProcessLocks::Obstacle> ProcessLocks::Access::acquire(const std::vector<AccessWish>& wishes,
                                                                    Clock::Ticks deadline, Precedence precedence)
{
    if (!file_.isOpen())
        return std::nullopt;
    const auto nodes = lockNodesFor(wishes);
    if (precedence != Precedence::OverNobody && lockAll(file_.get(), nodes, 0) != Outcome::InUse)
        return std::nullopt;
    return waitInLine(nodes, deadline, precedence == Precedence::OverEverybody);
}

std::optional<ProcessLocks::Obstacle> ProcessLocks::Access::waitInLine(const std::vector<LockNode>& nodes,
                                                                       Clock::Ticks deadline, bool isInFront)
{
    const auto place = locks_.open(); // closing it leaves the line
    if (!place.isOpen() || lockRange(place.get(), request(F_RDLCK, kSomebodyWaits, 1)) != Outcome::Locked)
        isInFront = true;
    for (std::chrono::microseconds pause = kShortestPause;; pause = std::min(pause * 2, kLongestPause)) {
        isInFront = isInFront || lockAll(place.get(), nodes, kLine) != Outcome::InUse;
        if (isInFront && lockAll(file_.get(), nodes, 0) != Outcome::InUse)
            return std::nullopt;
        if (locks_.clock_.uptime() >= deadline)
            return obstacleAmong(nodes);
        std::this_thread::sleep_for(pause);
    }
}

// Whoever has the item, and else whoever stands in front.
ProcessLocks::Obstacle ProcessLocks::Access::obstacleAmong(const std::vector<LockNode>& nodes) const
{
    for (const auto area : {off_t(0), kLine})
        for (auto node = nodes.rbegin(); node != nodes.rend(); ++node)
            if (const auto lock = obstacleOf(file_.get(), requestFor(*node, area)))
                return {node->path, findLockHolder(file_.get(), lock->l_start, lock->l_len)};
    return {nodes.back().path, std::nullopt};
}

} // namespace tessel
