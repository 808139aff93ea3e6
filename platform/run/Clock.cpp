#include "platform/run/Clock.h"

namespace tessel {

Date SystemClock::now() const
{
    return Date{std::chrono::nanoseconds(std::chrono::system_clock::now().time_since_epoch()).count()};
}

Clock::Ticks SystemClock::uptime() const
{
    return std::chrono::steady_clock::now().time_since_epoch();
}

} // namespace tessel
