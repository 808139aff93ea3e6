// Compiled anew whenever the program is linked anew, so that the stamp is the build's.
#include "app/entry/Banner.h"

#include "app/common/Log.h"

namespace tessel {

void logBanner(const std::string& executable)
{
    TSD_FUNCTION("main");
    TSD_DEBUG("-------------------------------------------------------");
    TSD_INFO("Running %s", executable);
    TSD_INFO("Built (main) on " __DATE__ " @ " __TIME__);
}

} // namespace tessel
