#pragma once

/// The names by which colours are asked to be put over one another; see the W3C's Compositing and Blending for what
/// they say.
namespace tessel::compositingFilter {

inline constexpr const char* kNormal = "normal";
inline constexpr const char* kSourceOver = "source-over";
inline constexpr const char* kMultiply = "multiply";
inline constexpr const char* kScreen = "screen";
inline constexpr const char* kOverlay = "overlay";
inline constexpr const char* kDarken = "darken";
inline constexpr const char* kLighten = "lighten";
inline constexpr const char* kColorDodge = "color-dodge";
inline constexpr const char* kColorBurn = "color-burn";
inline constexpr const char* kPlusLighter = "plus-lighter";
inline constexpr const char* kPlusDarker = "plus-darker";

} // namespace tessel::compositingFilter
