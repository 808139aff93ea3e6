#pragma once

#include "platform/ui/Geometry.h"

#include <QColor>

namespace tessel::qt {

/// The colour that a colour of the program has on screen. Shades from black to white are mirrored in lightness in dark
/// appearance, so that black text on white is near white on near black; real colours stay.
[[nodiscard]] QColor adaptedColor(const Color&, bool dark);

} // namespace tessel::qt
