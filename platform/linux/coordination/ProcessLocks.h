#pragma once

#include "platform/base/URL.h"
#include "platform/linux/coordination/LockHolder.h"
#include "platform/linux/coordination/LockNodes.h"
#include "platform/linux/files/FileDescriptor.h"
#include "platform/run/Clock.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tessel {

/// Keeps the accesses of different processes apart, by locks of open file descriptions on ranges of one file: a range
/// for each item and each folder above it. What a process held is free as soon as it has ended, however it did.
///
/// Nobody holds one range while waiting for another of the same access. Those who wait stand in line, and nobody who
/// asks later overtakes the first of those whose wishes are in each other's way.
///
/// Where there are no such locks (a home that cannot be written), no other process is kept out.
class ProcessLocks {
public:
    /// @param folder of the user's own, made when it is missing
    ProcessLocks(const URL& folder, const Clock& clock);

    /// What processes want others to know.
    struct Marks {
        bool isSomebodyInLine = false;
        bool isSomebodyListening = false; ///< somebody, this process included, wants to hear of accesses
    };
    [[nodiscard]] Marks marks() const;

    /// Whether an access goes ahead of those in line.
    enum class Precedence {
        OverNobody,
        NobodyInLine,
        OverEverybody, ///< for a thread that holds something already, for which they may be waiting
    };

    /// Why an access has not been given what it wanted.
    struct Obstacle {
        std::string path; ///< an item that it wanted, or a folder above one
        std::optional<LockHolder> holder;
    };

    /// One access, and what it holds until it is destroyed.
    class Access {
    public:
        /// Waits for all that is wished. Called once.
        /// @returns the obstacle, once the clock's uptime has reached the deadline
        [[nodiscard]] std::optional<Obstacle> acquire(const std::vector<AccessWish>&, Clock::Ticks deadline,
                                                      Precedence);

    private:
        friend class ProcessLocks;
        Access(const ProcessLocks& locks, FileDescriptor file) : locks_(locks), file_(std::move(file)) {}

        [[nodiscard]] std::optional<Obstacle> waitInLine(const std::vector<LockNode>&, Clock::Ticks deadline,
                                                         bool isInFront);
        [[nodiscard]] Obstacle obstacleAmong(const std::vector<LockNode>&) const;

        const ProcessLocks& locks_;
        FileDescriptor file_;
    };

    [[nodiscard]] Access begin() const { return {*this, open()}; }

    /// Tells every process, as long as the answer is held, that somebody wants to hear of accesses.
    [[nodiscard]] FileDescriptor listen() const;

private:
    [[nodiscard]] FileDescriptor open() const;

    const URL folder_;
    const std::string path_;
    const Clock& clock_;
    const FileDescriptor marks_; ///< for looking at marks; holds none
};

} // namespace tessel
