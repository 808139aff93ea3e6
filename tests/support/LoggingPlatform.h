#pragma once

#include "platform/base/NotificationCenter.h"
#include "platform/base/Platform.h"
#include "platform/log/UnifiedLog.h"
#include "platform/run/MainQueue.h"
#include "tests/support/ManualClock.h"

#include <cstddef>

namespace tessel {

/// Installs a platform that has a clock, a main queue, notifications and a log. Its other services must not be reached.
class LoggingPlatform {
    struct Unreachable {
        template <typename Service>
        operator Service&() const
        {
            alignas(std::max_align_t) static std::byte nothing[sizeof(std::max_align_t)] = {};
            return *reinterpret_cast<Service*>(nothing);
        }
    };

public:
    ManualClock clock;
    MainQueue mainQueue = MainQueue(clock);
    NotificationCenter notifications;
    UnifiedLog log = UnifiedLog(clock);

private:
    platform::Scope scope_ = platform::Scope({
        .clock = clock,
        .mainQueue = mainQueue,
        .notifications = notifications,
        .log = log,
        .text = Unreachable(),
        .types = Unreachable(),
        .files = Unreachable(),
        .resources = Unreachable(),
        .folders = Unreachable(),
        .cloud = Unreachable(),
        .defaults = Unreachable(),
        .device = Unreachable(),
    });
};

} // namespace tessel
