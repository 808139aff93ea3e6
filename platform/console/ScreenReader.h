#pragma once

#include "platform/console/ScreenElement.h"

namespace tessel {

/// Reads the screen off the key window's controllers: each kind of controller has one function that says what it shows.
[[nodiscard]] Screen readScreen();

} // namespace tessel
