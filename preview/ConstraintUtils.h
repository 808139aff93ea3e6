#pragma once

#include "platform/ui/layout/LayoutConstraint.h"

namespace tessel {

/// Sets of constraints that several views need. None is active yet.
class ConstraintUtils {
public:
    ConstraintUtils() = delete;

    /// The subview covers the view: top, bottom, middle, leading edge.
    [[nodiscard]] static LayoutConstraint::List stretchSubviewConstraints(View& subview, View& withinView);
    /// Two views over each other in the middle of their parent, from its top to its bottom, and no wider than it.
    /// @param middleGap points between them
    [[nodiscard]] static LayoutConstraint::List verticallyStackedConstraintsInParent(View& parent, View& topChild,
                                                                                     View& bottomChild,
                                                                                     double middleGap);
};

} // namespace tessel
