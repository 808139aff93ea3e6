#pragma once

#include "platform/console/LineSource.h"

#include <cstddef>
#include <memory>

namespace tessel {

class DocumentListController;

/// Runs the main queue while the console waits: for input, for time to pass, for the screen to be complete. All times
/// are those of the platform's clock. Main thread only.
class RunLoop {
public:
    explicit RunLoop(LineSource& source) : source_(source) {}

    /// The next line, or the end; never `Woken`.
    Input nextInput();

    /// Runs what is ready, and on while the shown list is being fetched, all its rows' details included.
    /// @returns false when it is still being fetched after `limit`.
    bool runWhileBusy(Clock::Ticks limit);
    /// The same, and waits for what is due within 2 seconds, for documents that are being downloaded, and, for 2
    /// seconds at most, until the shown list has caught up with its folder.
    bool settle(Clock::Ticks limit);
    void runFor(Clock::Ticks duration);

private:
    enum class Wanted { CompleteScreen, Quiet };

    bool runUntil(Wanted, Clock::Ticks limit);
    /// The console prints every row, so it sees them all; those of a list that is no longer shown it does not.
    void seeAllRows(const std::shared_ptr<DocumentListController>& list);
    /// Sleeps until `deadline`, the next delayed task, or a wake-up, whichever comes first.
    void waitForWork(Clock::Ticks deadline);

    LineSource& source_;
    std::weak_ptr<DocumentListController> seenList_;
    std::size_t seenRows_ = 0;
};

} // namespace tessel
