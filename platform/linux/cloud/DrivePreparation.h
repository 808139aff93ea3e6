#pragma once

#include "platform/linux/cloud/Catalog.h"

#include <memory>

namespace tessel {

struct CloudOptions;

/// Where the containers of a home lie.
[[nodiscard]] URL syncedRootIn(const URL& home);

/// Where a home's catalogue lies.
[[nodiscard]] URL catalogIn(const URL& home);

struct PreparedDrive {
    std::unique_ptr<Catalog> catalog;
    Catalog::Containers containers; ///< of the synced root, the default one included
};

/// What a start needs of the home: the catalogue, opened, made or, when it is damaged, made anew from the tree; and at
/// the first start without a bound drive the example drive. Instances wait for each other only while one makes
/// something.
Result<PreparedDrive> prepareDrive(const CloudOptions&);

} // namespace tessel
