#pragma once

#include "platform/base/URL.h"

namespace tessel {

struct BareListing {
    double seconds = 0;
    double rows = 0;
};

/// The least that makes a complete, sorted list, on one thread: each name once from the kernel, each item's attributes,
/// each key once.
BareListing listBarely(const URL& folder);

/// The same in a process of its own. @returns nothing measured when that fails
BareListing listBarelyInChild(const URL& folder);

} // namespace tessel
