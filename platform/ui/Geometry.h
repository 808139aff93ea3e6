#pragma once

namespace tessel {

/// Sizes and places in points; the origin is the leading top corner, y grows downwards.
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

/// Components from 0 to 1, not premultiplied, sRGB.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 0;

    [[nodiscard]] static constexpr Color white() { return {1, 1, 1, 1}; }
    [[nodiscard]] static constexpr Color clear() { return {0, 0, 0, 0}; }

    friend bool operator==(const Color&, const Color&) = default;
};

} // namespace tessel
