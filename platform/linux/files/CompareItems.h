#pragma once

#include "platform/base/URL.h"

namespace tessel {

/// Whether two open files hold the same bytes, read from their beginnings; not when one cannot be read.
[[nodiscard]] bool areEqualFiles(int left, int right);

/// Whether two items are of one kind and hold the same: the same bytes, the same link text, or items of the same names
/// for which this is true.
[[nodiscard]] bool areEqualItems(const URL& left, const URL& right);

} // namespace tessel
