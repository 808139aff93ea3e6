#include "platform/ui/Device.h"

#include "platform/ui/Window.h"

namespace tessel {

void Device::setScreenBounds(const Rect& bounds)
{
    screenBounds_ = bounds;
    if (const auto window = keyWindow())
        window->frame = bounds;
}

} // namespace tessel
