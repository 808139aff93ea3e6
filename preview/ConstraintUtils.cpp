#include "preview/ConstraintUtils.h"

#include "platform/ui/View.h"

namespace tessel {

LayoutConstraint::List ConstraintUtils::stretchSubviewConstraints(View& subview, View& withinView)
{
    return {subview.topAnchor().equalTo(withinView.topAnchor()),
            subview.bottomAnchor().equalTo(withinView.bottomAnchor()),
            subview.centerXAnchor().equalTo(withinView.centerXAnchor()),
            subview.leadingAnchor().equalTo(withinView.leadingAnchor())};
}

LayoutConstraint::List ConstraintUtils::verticallyStackedConstraintsInParent(View& parent, View& topChild,
                                                                             View& bottomChild, double middleGap)
{
    return {topChild.centerXAnchor().equalTo(parent.centerXAnchor()),
            topChild.widthAnchor().atMost(parent.widthAnchor()),
            bottomChild.centerXAnchor().equalTo(parent.centerXAnchor()),
            bottomChild.widthAnchor().atMost(parent.widthAnchor()),
            parent.topAnchor().equalTo(topChild.topAnchor()),
            bottomChild.topAnchor().equalTo(topChild.bottomAnchor(), middleGap),
            bottomChild.bottomAnchor().equalTo(parent.bottomAnchor())};
}

} // namespace tessel
