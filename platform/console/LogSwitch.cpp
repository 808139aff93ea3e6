#include "platform/console/LogSwitch.h"

#include "platform/base/Platform.h"
#include "platform/log/StreamSink.h"

#include <iostream>

namespace tessel {

void LogSwitch::turnOn(LogLevel minimumLevel)
{
    turnOff();
    sink_ = std::make_shared<StreamSink>(std::cerr);
    sink_->minimumLevel = minimumLevel;
    sink_->showsPrivateArguments = showsPrivateArguments_;
    platform::installed().log.addSink(sink_);
}

void LogSwitch::turnOff()
{
    if (sink_)
        platform::installed().log.removeSink(sink_);
    sink_.reset();
}

} // namespace tessel
