#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace tessel {

/// A point in time, in nanoseconds since 1970-01-01T00:00:00 UTC without leap seconds: what a file system keeps.
struct Date {
    std::int64_t nanoseconds = 0;

    /// Seconds from `earlier` to this date; negative when `earlier` is the later one.
    [[nodiscard]] double secondsSince(const Date& earlier) const
    {
        return static_cast<double>(nanoseconds - earlier.nanoseconds) / 1e9;
    }

    friend auto operator<=>(const Date&, const Date&) = default;
};

} // namespace tessel
