#pragma once

#include <optional>
#include <string>

namespace tessel::qt {

/// Chooses the way to a display for the application object to come, which ends the program when it cannot be gone: that
/// of QT_QPA_PLATFORM, else Wayland, else X. One is only chosen when its server answers.
/// @returns why there is no display, in words for the user; none when one was chosen
[[nodiscard]] std::optional<std::string> chooseDisplay();

/// What was chosen, as Qt calls it; empty while QT_QPA_PLATFORM says it. Not put into the environment, which the
/// programs that this one starts inherit.
[[nodiscard]] const std::string& chosenPlatform();

/// Lets go of what the choice was made with: to be called once the application object has its own connection.
void forgetTriedDisplay();

} // namespace tessel::qt
