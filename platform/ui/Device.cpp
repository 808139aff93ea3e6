#include "platform/ui/Device.h"

#include "platform/ui/TextField.h"
#include "platform/ui/Window.h"

namespace tessel {

void Device::setScreenBounds(const Rect& bounds)
{
    screenBounds_ = bounds;
    if (const auto window = keyWindow())
        window->setFrame(bounds);
    tellScreenChanged();
}

InterfaceOrientation Device::interfaceOrientation() const
{
    return screenBounds_.width > screenBounds_.height ? InterfaceOrientation::LandscapeRight
                                                      : InterfaceOrientation::Portrait;
}

void Device::setTextMeasurer(const TextMeasurer* measurer)
{
    measurer_ = measurer ? measurer : &fixedMeasurer_;
}

void Device::tellScreenChanged() const
{
    if (screenChanged)
        screenChanged();
}

} // namespace tessel
