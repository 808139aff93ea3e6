#pragma once

#include "platform/log/UnifiedLog.h"

#include <memory>

namespace tessel {

/// Copies the log to standard error while it is on. Main thread only.
class LogSwitch {
public:
    explicit LogSwitch(bool showsPrivateArguments) : showsPrivateArguments_(showsPrivateArguments) {}
    ~LogSwitch() { turnOff(); }
    LogSwitch(const LogSwitch&) = delete;
    LogSwitch& operator=(const LogSwitch&) = delete;

    void turnOn(LogLevel minimumLevel);
    void turnOff();

private:
    const bool showsPrivateArguments_;
    std::shared_ptr<LogSink> sink_;
};

} // namespace tessel
