#pragma once

#include "platform/linux/files/FileDescriptor.h"

namespace tessel {

/// While it lives, the first SIGINT, SIGTERM or SIGHUP asks the program to end, so that it can save its state; the next
/// one ends the process. A signal that the process was started with ignored (by nohup, say) stays ignored. Main thread
/// only; one at a time.
class EndSignals {
public:
    EndSignals();
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

    [[nodiscard]] static bool isEndAsked();
    /// Readable from the first signal on.
    [[nodiscard]] int descriptor() const { return asked_.get(); }

private:
    const FileDescriptor asked_;
};

} // namespace tessel
