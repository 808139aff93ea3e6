#include "platform/apps/DocumentRecord.h"

#include "platform/base/Platform.h"

namespace tessel {

ApplicationRegistry::RankedApplications DocumentRecord::applicationsAvailableForOpening() const
{
    return platform::installed().apps.applicationsForDocument(url_);
}

} // namespace tessel
