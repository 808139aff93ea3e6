#include "platform/ui/Window.h"

#include "platform/base/Platform.h"
#include "platform/ui/Device.h"
#include "platform/ui/ViewController.h"

namespace tessel {

void Window::makeKeyAndVisible()
{
    auto& device = platform::installed().device;
    device.keyWindow_ = std::static_pointer_cast<Window>(shared_from_this());
    if (const auto root = root_) {
        root->beginAppearing(Animated::No);
        root->endAppearing();
    }
    device.tellScreenChanged();
}

} // namespace tessel
