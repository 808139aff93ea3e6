#pragma once

#include <string>

namespace tessel {

/// The program that reads documents: beside the one that runs or, once installed, among those that nobody starts by
/// hand ("../libexec/tesseldrive"). Where there is none, a path that cannot be started.
[[nodiscard]] std::string decoderProgram();
/// The program that plays sound and films, likewise.
[[nodiscard]] std::string playerProgram();

} // namespace tessel
