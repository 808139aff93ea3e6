#include "bench/window/MeterPlugin.h"

#include "bench/window/FirstFrame.h"
#include "bench/window/Pictures.h"
#include "bench/window/Scrolling.h"

namespace tessel {

QObject* MeterPlugin::create(const QString& key, const QString&)
{
    if (key.compare("tesselmeter", Qt::CaseInsensitive) != 0)
        return nullptr;
    const auto what = qEnvironmentVariable("TESSEL_METER");
    if (what == "start")
        return new FirstFrame(qEnvironmentVariableIntValue("TESSEL_METER_ROWS"));
    if (what == "scroll")
        return new Scrolling(qEnvironmentVariableIntValue("TESSEL_METER_ROWS"));
    if (what == "pictures" || what == "pictures-scroll")
        return new Pictures(qEnvironmentVariableIntValue("TESSEL_METER_ROWS"), what != "pictures");
    return nullptr;
}

} // namespace tessel
