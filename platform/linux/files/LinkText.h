#pragma once

#include <optional>
#include <string>

namespace tessel {

/// The text of a symbolic link, whatever its length; none with errno set when the path is no link.
[[nodiscard]] std::optional<std::string> linkText(const std::string& path);

} // namespace tessel
