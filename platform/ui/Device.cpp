#include "platform/ui/Device.h"

#include "platform/base/NotificationCenter.h"
#include "platform/base/Platform.h"
#include "platform/ui/Application.h"

#include "platform/base/NotificationCenter.h"
#include "platform/base/Platform.h"
#include "platform/ui/TextField.h"
#include "platform/ui/Window.h"

namespace tessel {

namespace {

constexpr double kRegularTabletWidth = 600; ///< points
constexpr double kRegularPhoneWidth = 736;

bool isLandscape(const Rect& bounds)
{
    return bounds.width > bounds.height;
}

} // namespace

void Device::setScreenBounds(const Rect& bounds)
{
    screenBounds_ = bounds;
    if (const auto window = keyWindow())
        window->setFrame(bounds);
    tellScreenChanged();
}

InterfaceOrientation Device::interfaceOrientation() const
{
    return isLandscape(screenBounds_) ? InterfaceOrientation::LandscapeRight : InterfaceOrientation::Portrait;
}

SizeClass Device::horizontalSizeClass() const
{
    if (idiom == Idiom::Pad)
        return screenBounds_.width >= kRegularTabletWidth ? SizeClass::Regular : SizeClass::Compact;
    return isLandscape(screenBounds_) && screenBounds_.width >= kRegularPhoneWidth ? SizeClass::Regular
                                                                                   : SizeClass::Compact;
}

SizeClass Device::verticalSizeClass() const
{
    return idiom == Idiom::Phone && isLandscape(screenBounds_) ? SizeClass::Compact : SizeClass::Regular;
}

void Device::setTextMeasurer(const TextMeasurer* measurer)
{
    measurer_ = measurer ? measurer : &fixedMeasurer_;
}

void Device::keyboardWillShow(const KeyboardMotion& motion)
{
    keyboard_ = motion;
    platform::installed().notifications.post(kKeyboardWillShowNotification);
}

/// Nobody is to take the keyboard that goes for one that is there.
void Device::keyboardWillHide(const KeyboardMotion& motion)
{
    keyboard_ = motion;
    platform::installed().notifications.post(kKeyboardWillHideNotification);
    keyboard_ = {};
}

void Device::tellScreenChanged() const
{
    if (screenChanged)
        screenChanged();
    if (const auto* services = platform::installedIfAny())
        services->notifications.post(kScreenDidChangeNotification);
}

} // namespace tessel
