#include "preview/HairlineView.h"

#include "platform/base/Platform.h"
#include "platform/ui/Device.h"
#include "platform/ui/layout/LayoutConstraint.h"

namespace tessel {

HairlineView::HairlineView()
{
    setBackgroundColor(Color::barHairline());
    setCompressionResistance(LayoutAxis::Vertical, LayoutPriority::kRequired);
    heightAnchor().equalTo(_hairlineThicknessInPoints())->setActive(true);
}

double HairlineView::_hairlineThicknessInPoints()
{
    return 1 / platform::installed().device.screenScale;
}

} // namespace tessel
