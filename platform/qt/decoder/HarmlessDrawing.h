#pragma once

#include <QByteArray>

namespace tessel::qt {

/// A copy of a vector drawing in SVG without what is dangerous to draw: references to anything outside of itself, style
/// sheets and entities, and parts that draw again what draws again (which doubles the work with every few bytes).
/// @returns nothing when the drawing is damaged, or there is too much in it to draw
[[nodiscard]] QByteArray harmlessDrawing(const QByteArray& drawing);

} // namespace tessel::qt
