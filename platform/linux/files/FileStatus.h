#pragma once

#include "platform/files/FileManager.h"

#include <optional>

namespace tessel {

/// The attributes of one item by one call; links are not followed.
/// @param folder a descriptor that a relative path starts from, or AT_FDCWD
/// @returns none with errno set when the item cannot be described
[[nodiscard]] std::optional<FileAttributes> fileAttributesAt(int folder, const char* path);

} // namespace tessel
