#pragma once

#include <cstdint>

namespace tessel {

enum class TextStyle : std::uint8_t { Title2, Headline, Body, Subheadline, Footnote, Caption1, Caption2 };

/// The system's font in a size of its own.
struct Font {
    double size = 17; ///< points
    bool bold = false;

    /// The style at its own size, whatever the user's text size is.
    [[nodiscard]] static Font ofStyle(TextStyle);
    /// The style at the user's text size (Device::textScale).
    [[nodiscard]] static Font preferred(TextStyle);

    friend bool operator==(const Font&, const Font&) = default;
};

} // namespace tessel
