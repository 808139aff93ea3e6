#pragma once

#include <string>

namespace tessel {

/// Logs that the program starts: a separator from the run before, the executable, and when it was built.
void logBanner(const std::string& executable);

} // namespace tessel
