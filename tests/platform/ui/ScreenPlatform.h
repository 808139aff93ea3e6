#pragma once

#include "platform/ui/Device.h"
#include "tests/support/LoggingPlatform.h"

namespace tessel {

/// Installs a platform that has a device besides what the logging platform has.
class ScreenPlatform : public LoggingPlatform {
public:
    Device device;

private:
    platform::Scope scope_ = platform::Scope({
        .clock = clock,
        .mainQueue = mainQueue,
        .notifications = notifications,
        .log = log,
        .text = platform::installed().text,
        .types = platform::installed().types,
        .files = platform::installed().files,
        .resources = platform::installed().resources,
        .folders = platform::installed().folders,
        .cloud = platform::installed().cloud,
        .defaults = platform::installed().defaults,
        .device = device,
    });
};

} // namespace tessel
