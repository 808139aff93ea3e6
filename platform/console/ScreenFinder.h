#pragma once

#include "platform/console/Answer.h"
#include "platform/console/ScreenElement.h"

namespace tessel {

/// What a name on the screen stands for.
struct Found {
    const ScreenElement* element = nullptr; ///< null when refused
    Refusal refusal;
};

/// The one row of that name, or else the one control. Refused when there is none, or more than one.
[[nodiscard]] Found findNamed(const Screen&, std::string_view name);
/// The same among the rows alone.
[[nodiscard]] Found findRow(const Screen&, std::string_view name);

/// Presses what was found, unless it is disabled.
[[nodiscard]] Refusal press(const Found&);

} // namespace tessel
