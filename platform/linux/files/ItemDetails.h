#pragma once

#include "platform/linux/files/LinuxFolderReader.h"

#include <atomic>

namespace tessel {

/// Reads what is told of an item only when it is looked at. A detail that cannot be read is absent.
/// @param abandoned ends the reading soon when it becomes true
[[nodiscard]] ItemDetails readItemDetails(const URL& item, const FolderServices&, const std::atomic<bool>& abandoned);

} // namespace tessel
