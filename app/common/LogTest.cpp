#include "app/common/LogTest.h"

#include "app/common/Log.h"

namespace tessel {

void _TesselDriveLogTest()
{
    TSD_FUNCTION("_TesselDriveLogTest");
    TSD_DEBUG("LOG_DEBUG");
    TSD_INFO("LOG_INFO");
    TSD_WARNING("LOG_WARNING");
    TSD_ERROR("LOG_ERR");
}

} // namespace tessel
