#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tessel {

/// The <comment> of a type's file in the MIME database that fits a locale best: its own, its language's, then the one
/// without a language. None when the text has no such comment.
[[nodiscard]] std::optional<std::string> bestComment(std::string_view xml, std::string_view locale);

} // namespace tessel
