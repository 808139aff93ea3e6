#include "tests/window/driver/DriverPlugin.h"

#include "tests/window/driver/Driver.h"

namespace tessel {

QObject* DriverPlugin::create(const QString&, const QString&)
{
    return new Driver;
}

} // namespace tessel
