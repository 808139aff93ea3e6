#pragma once

#include "platform/base/Platform.h"
#include "platform/linux/LinuxPlatform.h"
#include "tests/support/LogCapture.h"
#include "tests/support/ManualClock.h"
#include "tests/support/TemporaryDrive.h"

#include <functional>
#include <memory>

namespace tessel {

/// The whole platform over folders of the test's own, installed for the test's length, with a clock that the test turns
/// and a log that it reads.
class InstalledPlatform {
public:
    InstalledPlatform(const URL& home, const URL& drive);
    ~InstalledPlatform();

    [[nodiscard]] const platform::Services& services() const { return platform::installed(); }
    [[nodiscard]] StateStore& stateStore() { return platform_->stateStore(); }

    /// Runs the main queue until nothing is ready and the list on screen is complete. Fails the test after 30 seconds.
    void settle();
    /// Runs the main queue, waiting for other threads, until the condition holds. @returns false after 30 seconds.
    bool runUntil(const std::function<bool()>& condition);
    /// Lets time pass by the clock.
    void turn(double seconds);

    std::shared_ptr<LogCapture> log = std::make_shared<LogCapture>();

private:
    ManualClock clock_;
    std::unique_ptr<LinuxPlatform> platform_;
    std::unique_ptr<platform::Scope> scope_;
};

} // namespace tessel
