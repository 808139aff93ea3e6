#pragma once

#include "platform/base/URL.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// One thing on the screen: what is shown of it, and what pressing it does. It is a copy of this moment; press it
/// before the main queue runs again.
struct ScreenElement {
    std::string_view key;           ///< what it is; see the console's contract
    std::vector<std::string> parts; ///< texts as the user sees them, one line each
    std::string name;               ///< what a command calls it; empty for what only informs
    std::function<void()> press;    ///< none: disabled
    std::optional<URL> url;         ///< of a row

    [[nodiscard]] bool isRow() const { return url.has_value(); }
    /// The parts in one line.
    [[nodiscard]] std::string text() const;
};

/// From the top of the screen to its end.
using Screen = std::vector<ScreenElement>;

/// Whether an element stands in the line of the one before it, as those of a toolbar do.
[[nodiscard]] bool continuesLine(const Screen&, std::size_t index);

} // namespace tessel
