#pragma once

#include "platform/ui/BarButtonItem.h"
#include "platform/ui/View.h"

#include <memory>

namespace tessel {

/// How a controller lies over the one that presents it.
enum class PresentationStyle {
    FullScreen,
    OverCurrentContext, ///< what lies beneath shows through where the view is clear
    Peek,               ///< on a card, until it is let go of
    Popover,            ///< at its anchor on a tablet; from the bottom edge on a phone
};

/// Where a popover points. With neither a view nor a bar button it stands in the middle.
struct PopoverAnchor {
    std::weak_ptr<View> sourceView;
    Rect sourceRect; ///< in the source view's coordinates
    bool onlyLeftOrRight = false;
    std::weak_ptr<BarButtonItem> barButtonItem;
};

} // namespace tessel
