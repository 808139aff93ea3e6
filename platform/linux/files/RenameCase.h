#pragma once

#include "platform/base/URL.h"

namespace tessel {

class UnfinishedWork;

/// Renames an item to a name that its file system takes for the same as its own, such as one that differs in case
/// only.
/// @returns false with errno set when it keeps its name; EEXIST when that other name is another item's
[[nodiscard]] bool renameCase(const URL& from, const URL& to, const UnfinishedWork&);

} // namespace tessel
