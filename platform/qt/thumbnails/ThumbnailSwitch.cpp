#include "platform/qt/thumbnails/ThumbnailSwitch.h"

#include "platform/base/Platform.h"
#include "platform/cloud/UserDefaults.h"

namespace tessel::qt {

bool showsThumbnails()
{
    const auto stored = platform::installed().defaults.value("orvane.TesselDriveApp.ShowsThumbnails");
    const auto* wanted = stored.get<bool>();
    return !wanted || *wanted;
}

} // namespace tessel::qt
