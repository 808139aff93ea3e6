#pragma once

#include "platform/ui/layout/LayoutAnchor.h"
#include "platform/ui/layout/LayoutConstraint.h"
#include "platform/ui/layout/LayoutEngine.h"

#include <array>
#include <memory>

namespace tessel {

/// What a view has besides its frame when constraints speak of it. Constraints keep it when the view is gone.
struct ViewLayout {
    View* view = nullptr; ///< null when it is gone
    bool byConstraints = false;
    std::array<double, 2> hugging{LayoutPriority::kLow, LayoutPriority::kLow}; ///< of each LayoutAxis
    std::array<double, 2> resistance{LayoutPriority::kHigh, LayoutPriority::kHigh};
    LayoutConstraint::List held;          ///< active, in the order of activation
    std::unique_ptr<LayoutEngine> engine; ///< of the uppermost view, once it was needed
    bool isInPass = false;                ///< the uppermost view is being laid out
    bool isStale = false; ///< something has changed in the current pass, maybe after it was already taken into account
};

} // namespace tessel
