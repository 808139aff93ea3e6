#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"
#include "platform/run/Clock.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <stop_token>
#include <vector>

namespace tessel {

/// How much the documents of a drive take of their account's room: those on the device by the size of their files,
/// those that are not by that of their records. Safe to use from any thread; blocks while it counts.
class DriveUsage {
public:
    explicit DriveUsage(const Clock& clock) : clock_(clock) {}

    /// Counts what lies in some folders. That takes the longer the more there is, so a count is answered again for ten
    /// times as long as it took.
    /// @param stop ends it early; the answer then means nothing
    /// @returns the error of a folder among these that cannot be read; what cannot be read below them does not count
    Result<std::uint64_t> bytesIn(const std::vector<URL>& folders, const std::stop_token& stop);

private:
    struct Count {
        std::vector<URL> folders;
        std::uint64_t bytes;
        Clock::Ticks goodUntil;
    };

    const Clock& clock_;
    std::mutex mutex_;
    std::optional<Count> last_;
};

} // namespace tessel
