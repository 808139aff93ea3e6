#pragma once

#include "platform/run/DispatchQueue.h"

#include <string>

namespace tessel {

/// Gives the calling thread the scheduling priority of a quality of service, and a name for whoever looks at the
/// process from outside. A system that allows neither leaves the thread as it is.
void applyQualityOfService(QualityOfService, const std::string& threadName);

} // namespace tessel
