#include "platform/ui/Window.h"

#include "platform/base/Platform.h"
#include "platform/ui/Device.h"
#include "platform/ui/ViewController.h"

namespace tessel {

void Window::makeKeyAndVisible()
{
    platform::installed().device.keyWindow_ = weak_from_this();
    if (root_)
        root_->view();
}

} // namespace tessel
