#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tessel {

/// Makes or replaces a file (mode 0600) whole or not at all, and on disk when the call returns without an error. After
/// an error the old content is still there and nothing is left beside it; only when the folder cannot be synced is the
/// new content in place, though not surely on disk.
[[nodiscard]] std::optional<Error> writeFileAtomically(const URL&, std::string_view bytes);
/// The same without waiting for the disk: a machine that ends soon afterwards may find the old content, or none.
[[nodiscard]] std::optional<Error> writeFileAtomicallyWithoutSync(const URL&, std::string_view bytes);

/// Removes what writeFileAtomically left in a folder when it was killed: its temporary files that are older than a
/// minute. A younger one may still be in use.
void removeAbandonedTemporaryFiles(const URL& folder);

/// The content of a regular file. Anything else, a pipe included, is an error at once and never waited for.
/// @param limit bytes; a longer file is an error (EFBIG), what is no regular file another (EINVAL)
Result<std::string> readSmallFile(const URL&, std::size_t limit);

} // namespace tessel
