#include "platform/documents/DocumentInteractionController.h"

#include "platform/apps/ApplicationRegistry.h"
#include "platform/base/Platform.h"
#include "platform/log/UnifiedLog.h"

namespace tessel {

void DocumentInteractionController::openInPlace(const ApplicationRecord& application) const
{
    const auto& services = platform::installed();
    if (const auto error = services.apps.openDocument(document_, application))
        services.log.write(LogLevel::Error, "Cannot open %@ in %@: %@", document_, application, *error);
}

} // namespace tessel
