#pragma once

#include "platform/ui/Geometry.h"

namespace tessel {

/// A rectangle of the screen: what a shell draws for it, it reads from here.
class View {
public:
    virtual ~View() = default;

    Rect frame; ///< in the parent's coordinates
    Color backgroundColor = Color::clear();
};

} // namespace tessel
