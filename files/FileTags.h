#pragma once

#include "platform/ui/Color.h"
#include "platform/ui/Geometry.h"
#include "platform/ui/Image.h"

#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tessel {

/// The tags that the user's desktop knows, with their colours, as the key-value store tells them. They are read when
/// they are first asked for and then follow the store; what a caller has is a copy. Main thread only.
class FileTags {
public:
    FileTags() = delete;

    using Colors = std::map<std::string, Color>;

    [[nodiscard]] static Colors tagColorsByTag();
    /// In the desktop's order; a name that is there twice has the colour of the later one.
    [[nodiscard]] static std::vector<std::string> allTags();

    /// The colours of the label numbers 0, for a tag without a colour, to 7.
    [[nodiscard]] static const std::array<Color, 8>& _tagBlipColors();
    /// Reads the store again.
    static void _tagColorsDidChange();

    /// A dot in the tag's colour, with a lighter rim; empty for a tag that the desktop does not know.
    /// @param blipHeight the side of the square in which it lies, a point inside the edges
    /// @param offset where in the image the square begins
    /// @returns none without a tag
    [[nodiscard]] static std::optional<Image> blipWithTag(const std::optional<std::string>& tag, const Size& imageSize,
                                                          double blipHeight, const Point& offset);
};

} // namespace tessel
