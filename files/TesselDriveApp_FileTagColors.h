#pragma once

#include "platform/ui/Color.h"

#include <optional>
#include <string_view>

namespace tessel {

/// A colour with another one put over it, computed in 32-bit floats as the screen would; the alpha is the backdrop's
/// but for source-over, whose is the union of both.
/// @param backdrop unchanged for no colour, a transparent one, or an unknown filter
/// @param compositingFilter a name of platform/ui/CompositingFilter.h; none for source-over
[[nodiscard]] Color tsd_colorBlendedWithColor(const Color& backdrop, const std::optional<Color>& source,
                                              std::optional<std::string_view> compositingFilter);
/// By source-over.
[[nodiscard]] Color tsd_colorBlendedWithColor(const Color& backdrop, const std::optional<Color>& source);

} // namespace tessel
