#pragma once

#include <cstdint>

namespace tessel {

/// Components from 0 to 1, not premultiplied, sRGB.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 0;

    [[nodiscard]] static constexpr Color white() { return {1, 1, 1, 1}; }
    [[nodiscard]] static constexpr Color black() { return {0, 0, 0, 1}; }
    /// A shade from black, 0, to white, 1.
    [[nodiscard]] static constexpr Color gray(double level, double alpha = 1) { return {level, level, level, alpha}; }
    [[nodiscard]] static constexpr Color lightGray() { return gray(2.0 / 3); }
    /// The line at the edge of a bar.
    [[nodiscard]] static constexpr Color barHairline() { return gray(0.78); }
    [[nodiscard]] static constexpr Color clear() { return {0, 0, 0, 0}; }

    // The system's own colours, which stand out on light and dark alike.
    [[nodiscard]] static constexpr Color systemGray() { return opaque(0x8a8d93); }
    [[nodiscard]] static constexpr Color systemGreen() { return opaque(0x4fae50); }
    [[nodiscard]] static constexpr Color systemPurple() { return opaque(0x9b5fc9); }
    [[nodiscard]] static constexpr Color systemBlue() { return opaque(0x3b82e0); }
    [[nodiscard]] static constexpr Color systemYellow() { return opaque(0xf2c12e); }
    [[nodiscard]] static constexpr Color systemRed() { return opaque(0xe5483d); }
    [[nodiscard]] static constexpr Color systemOrange() { return opaque(0xf08a24); }

    friend bool operator==(const Color&, const Color&) = default;

private:
    /// @param rgb a byte for each component, red first
    static constexpr Color opaque(std::uint32_t rgb)
    {
        constexpr auto component = [](std::uint32_t byte) { return static_cast<double>(byte & 0xffU) / 255; };
        return {component(rgb >> 16U), component(rgb >> 8U), component(rgb), 1};
    }
};

} // namespace tessel
