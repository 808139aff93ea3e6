#pragma once

#include "platform/run/Clock.h"

#include <optional>
#include <string>

namespace tessel {

/// What ended a wait for input.
struct Input {
    enum class Kind {
        Line,    ///< `line` holds it, without its end
        TooLong, ///< a line was longer than the source takes; it was skipped
        Woken,   ///< the main queue has work, or the time is over
        End,     ///< there is no more input
    };

    Kind kind = Kind::Woken;
    std::string line; ///< any bytes
};

/// Where the console's commands come from. It waits for them and, at once, for the main queue's next work, so that the
/// loop needs no second thread. Main thread only.
class LineSource {
public:
    virtual ~LineSource() = default;

    /// Waits for a line. @param timeout how long at most; none: for ever.
    virtual Input next(std::optional<Clock::Ticks> timeout) = 0;
    /// Waits for the main queue alone; lines stay where they are.
    virtual void waitForWake(Clock::Ticks timeout) = 0;
};

} // namespace tessel
