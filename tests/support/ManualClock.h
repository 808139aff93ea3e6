#pragma once

#include "platform/run/MainQueue.h"

#include <atomic>
#include <chrono>

namespace tessel {

/// A clock that a test turns by hand. It starts at 2026-11-22T12:00:00 UTC and stands still between turns.
class ManualClock final : public Clock {
public:
    [[nodiscard]] Date now() const override { return Date{kStart.count() + elapsed_.load()}; }
    [[nodiscard]] Ticks uptime() const override { return Ticks(elapsed_.load()); }

    void advance(double seconds) { elapsed_ += ticks(seconds).count(); }
    /// @param uptime not before the present one
    void advanceTo(Ticks uptime) { elapsed_ = uptime.count(); }

    static Ticks ticks(double seconds)
    {
        return std::chrono::duration_cast<Ticks>(std::chrono::duration<double>(seconds));
    }

private:
    static constexpr Ticks kStart = std::chrono::seconds(1'795'348'800);

    std::atomic<Ticks::rep> elapsed_ = 0;
};

} // namespace tessel
