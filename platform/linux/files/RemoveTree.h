#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"

#include <optional>

namespace tessel {

/// Whether folders that may not be written are emptied all the same, where they are the user's own.
enum class Protection { Respect, Override };

/// Removes an item with all that is in it; a link, not what it leads to. Nothing is removed when a folder in it cannot
/// be read or written. After any other failure it goes on, and tries again what failed, so that as little as possible
/// is left.
/// @param named the item that the error names
/// @returns a failure, when anything is left
[[nodiscard]] std::optional<Error> removeTree(const URL&, Protection, const URL& named);

/// What removing a folder would stop at before anything is removed.
[[nodiscard]] std::optional<Error> checkFolderCanBeRemoved(const URL& folder, const URL& named);

} // namespace tessel
