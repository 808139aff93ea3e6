#pragma once

#include "platform/ui/Color.h"

namespace tessel {

/// Sizes and places in points; the origin is the leading top corner, y grows downwards.
struct Point {
    double x = 0;
    double y = 0;

    friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
    double width = 0;
    double height = 0;

    friend bool operator==(const Size&, const Size&) = default;
};

struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    friend bool operator==(const Rect&, const Rect&) = default;
};

/// Distances inwards from the edges of a rectangle, in points.
struct EdgeInsets {
    double top = 0;
    double leading = 0;
    double bottom = 0;
    double trailing = 0;

    friend bool operator==(const EdgeInsets&, const EdgeInsets&) = default;
};

/// A line along a rectangle's edge, inside it.
struct Border {
    double width = 0; ///< points
    Color color = Color::black();

    friend bool operator==(const Border&, const Border&) = default;
};

} // namespace tessel
