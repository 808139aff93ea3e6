#pragma once

#include "platform/base/URL.h"

namespace tessel {

/// Renames an item unless something has the other name already (EEXIST). On a file system that cannot do both at once
/// the name is looked at first, which leaves a gap for a program that does not coordinate.
/// @returns false with errno set when it was not renamed
[[nodiscard]] bool renameWithoutReplacing(const URL& from, const URL& to);
/// Does so under the first name that is free: the wanted one, or the same with " 2", " 3" and so on before its
/// extension.
[[nodiscard]] bool renameToFreeNameLike(const URL& from, const URL& wanted);

} // namespace tessel
