#pragma once

#include "platform/log/UnifiedLog.h"

#include <memory>
#include <string>

namespace tessel {

/// Where the log goes unless the user says otherwise: the system journal where there is one, else "tesseldrive.log" in
/// the state folder, which need not exist. Takes lines from info on and hides private arguments.
[[nodiscard]] std::shared_ptr<LogSink> makeDefaultLogSink(const std::string& stateFolder);

} // namespace tessel
