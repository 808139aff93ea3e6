#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"

#include <optional>

namespace tessel {

class UnfinishedWork;

/// Moves an item to another file system: copies it, verifies the copy, publishes it without replacing anything, and
/// removes the source, which must not have changed meanwhile. After an error the item is in its old place alone; should
/// its removal stop half-way, the copy stays, whole. What a program that does not coordinate has changed of the copy by
/// then stays, too.
/// @param named the item that the error names
[[nodiscard]] std::optional<Error> moveBetweenFileSystems(const URL& from, const URL& to, const URL& named,
                                                          const UnfinishedWork&);

} // namespace tessel
