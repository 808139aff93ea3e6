#pragma once

#include "platform/ui/Device.h"
#include "platform/ui/Geometry.h"

namespace tessel::qt {

/// The kind of device that a window of this size, in points, is one of.
[[nodiscard]] Idiom idiomOfSize(const Size&);

/// The size with which the window opens: that of the last time, else one that suits the screen; never larger than the
/// screen, nor too small to be used.
[[nodiscard]] Size firstWindowSize(const Size& screen);
/// Keeps the size for the next start.
void rememberWindowSize(const Size&);

} // namespace tessel::qt
