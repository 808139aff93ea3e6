#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace tessel {

/// A document of one page (PDF 1.4) with lines of Latin text, the first one as its heading.
[[nodiscard]] std::string pdfDocument(std::string_view lines);

using PixelColor = std::array<std::uint8_t, 3>; ///< red, green, blue

/// A picture of 96 × 64 pixels (PNG): a sky that fades into the horizon, a sun or moon, and the land below.
struct Landscape {
    PixelColor sky;
    PixelColor horizon;
    PixelColor land;
    PixelColor sun;
    int sunX; ///< pixels from the left
    int sunY; ///< pixels from the top
};
[[nodiscard]] std::string pngPicture(const Landscape&);

} // namespace tessel
