#pragma once

#include <cstdint>

namespace tessel {

/// How a change of views is to be seen.
struct Animation {
    static constexpr std::uint32_t kLayoutSubviews = 1;        ///< the subviews are laid out as a part of the change
    static constexpr std::uint32_t kBeginFromCurrentState = 4; ///< a change that is still under way is taken over
    /// What a curve is multiplied by among the options: 0 for both ends slow, 1 for the beginning, 2 for the end, 3 for
    /// a steady speed.
    static constexpr std::uint32_t kCurve = 65'536;

    double duration = 0; ///< seconds
    double delay = 0;    ///< seconds
    std::uint32_t options = 0;
};

} // namespace tessel
