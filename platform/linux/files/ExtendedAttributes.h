#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"

#include <optional>
#include <string>
#include <string_view>

namespace tessel {

/// The value of an extended attribute, at most 64 KiB; none when the item has no such attribute or its file system
/// keeps none. Links are not followed.
/// @param name with its namespace, such as "user.xdg.tags"
Result<std::optional<std::string>> extendedAttribute(const URL&, const char* name);

[[nodiscard]] std::optional<Error> setExtendedAttribute(const URL&, const char* name, std::string_view value);

} // namespace tessel
