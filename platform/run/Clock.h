#pragma once

#include "platform/base/Date.h"

#include <chrono>

namespace tessel {

/// The time: one clock for dates and one, never set back, for delays. Safe to use from any thread.
class Clock {
public:
    using Ticks = std::chrono::nanoseconds;

    virtual ~Clock() = default;

    [[nodiscard]] virtual Date now() const = 0;
    /// Time since an arbitrary start; it only grows.
    [[nodiscard]] virtual Ticks uptime() const = 0;
};

class SystemClock final : public Clock {
public:
    [[nodiscard]] Date now() const override;
    [[nodiscard]] Ticks uptime() const override;
};

} // namespace tessel
