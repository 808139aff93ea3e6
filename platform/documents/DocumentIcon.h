#pragma once

#include "platform/ui/Image.h"

#include <string_view>

namespace tessel {

/// The freedesktop names of the icon for documents of a type, the best first, separated by blanks.
[[nodiscard]] std::string_view documentIconNames(std::string_view typeIdentifier);

/// The icon for a document. @param name tells its type when the identifier says no more than that it is data
[[nodiscard]] Image documentIcon(std::string_view name, std::string_view typeIdentifier, const Size&);

} // namespace tessel
