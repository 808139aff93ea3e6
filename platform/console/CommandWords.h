#pragma once

#include "platform/console/Answer.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// One line of input, taken apart: words parted by blanks. Double quotes hold a word with blanks together; in them `\"`
/// and `\\` stand for a quote and a backslash. A `#` at the beginning of a word begins a comment.
struct CommandWords {
    std::vector<std::string> words; ///< bytes as they were typed; empty for a blank line
    Refusal refusal;

    [[nodiscard]] static CommandWords parse(std::string_view line);
};

} // namespace tessel
