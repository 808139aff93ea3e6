#pragma once

#include "platform/ui/Font.h"
#include "platform/ui/Geometry.h"

#include <cstddef>
#include <string_view>

namespace tessel {

/// In points; all are positive.
struct FontMetrics {
    double ascender = 0;
    double descender = 0;
    double capHeight = 0;
    double lineHeight = 0; ///< from one baseline to the next
};

/// As wide as no text is: measured within it, text breaks only where it has line breaks.
inline constexpr double kUnlimitedWidth = 1e6;

/// Says how much room text takes. A shell measures with the font that it draws with.
class TextMeasurer {
public:
    virtual ~TextMeasurer() = default;

    [[nodiscard]] virtual FontMetrics metrics(const Font&) const = 0;
    /// The size of UTF-8 text broken into lines of at most `width`; height is that of all lines, none for no
    /// text.
    /// @param width above 0, at most kUnlimitedWidth
    /// @param lines the most lines; 0 for any number
    [[nodiscard]] virtual Size measure(std::string_view text, const Font&, double width, std::size_t lines) const = 0;
};

/// Every character is as wide as half the font's size, so that a layout is the same everywhere: for shells that draw no
/// pixels.
class FixedTextMeasurer final : public TextMeasurer {
public:
    [[nodiscard]] FontMetrics metrics(const Font&) const override;
    [[nodiscard]] Size measure(std::string_view text, const Font&, double width, std::size_t lines) const override;
};

} // namespace tessel
