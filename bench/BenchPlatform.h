#pragma once

#include "platform/linux/LinuxPlatform.h"
#include "platform/log/UnifiedLog.h"
#include "tests/support/TemporaryDrive.h"

namespace tessel {

/// What a benchmark installs: the platform over a folder of its own, with nobody who takes its log lines.
class BenchPlatform {
    TemporaryDrive home_;
    std::unique_ptr<LinuxPlatform> platform_ =
        std::move(LinuxPlatform::create({home_.url().path(), home_.folder("drive").path(), nullptr, "en"}).value());
    platform::Scope scope_ = platform::Scope(platform_->services());

public:
    UnifiedLog& log = platform::installed().log;
};

} // namespace tessel
