#pragma once

#include "bench/window/Meter.h"

namespace tessel {

/// Tells "painted", the monotonic clock's seconds when the first frame with all that is waited for is on the screen.
class FirstFrame final : public Meter {
    Q_OBJECT

public:
    using Meter::Meter;

protected:
    void painted(double since) override;
};

} // namespace tessel
