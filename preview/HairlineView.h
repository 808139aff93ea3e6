#pragma once

#include "platform/ui/View.h"

namespace tessel {

/// A horizontal line, one pixel of the screen high.
class HairlineView : public View {
public:
    HairlineView();

private:
    [[nodiscard]] static double _hairlineThicknessInPoints();
};

} // namespace tessel
