#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"

#include <optional>

namespace tessel {

/// Moves a damaged file out of the way, to "<name>.damaged-<n>" with the first free n from 1 on: nothing that might be
/// of use to somebody is deleted. A file that is not there is no error.
[[nodiscard]] std::optional<Error> setAside(const URL&);

} // namespace tessel
