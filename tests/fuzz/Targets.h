#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace tessel::fuzz {

/// What reads input that may be damaged or hostile. It must come to an end, and leave the program whole.
struct Target {
    const char* name;
    std::function<void(std::string_view)> read; ///< ends the process when a promise is broken
};

[[nodiscard]] std::span<const Target> targets();
/// @returns null when none has this name
[[nodiscard]] const Target* targetNamed(std::string_view name);

} // namespace tessel::fuzz
