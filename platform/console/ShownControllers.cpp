#include "platform/console/ShownControllers.h"

#include "platform/base/Platform.h"
#include "platform/documents/DocumentListController.h"
#include "platform/documents/PeekController.h"
#include "platform/documents/PreviewController.h"
#include "platform/documents/SearchController.h"
#include "platform/ui/AlertController.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/Window.h"

namespace tessel {

namespace {

std::shared_ptr<NavigationController> rootOfKeyWindow()
{
    const auto window = platform::installed().device.keyWindow();
    return window ? std::dynamic_pointer_cast<NavigationController>(window->rootViewController()) : nullptr;
}

} // namespace

ShownControllers ShownControllers::now()
{
    ShownControllers shown;
    shown.navigation = rootOfKeyWindow();
    if (!shown.navigation)
        return shown;
    shown.top = shown.navigation->topViewController();
    for (auto over = shown.navigation->presentedViewController(); over; over = over->presentedViewController())
        shown.add(over);
    shown.list = std::dynamic_pointer_cast<DocumentListController>(shown.top);
    shown.preview = std::dynamic_pointer_cast<PreviewController>(shown.top);
    return shown;
}

void ShownControllers::add(const std::shared_ptr<ViewController>& presented)
{
    alert = std::dynamic_pointer_cast<AlertController>(presented);
    const auto found = std::dynamic_pointer_cast<SearchController>(presented);
    if (alert || found) {
        search = found ? found : search;
        return;
    }
    search = nullptr;
    const auto stack = std::dynamic_pointer_cast<NavigationController>(presented);
    isStackCovered = !stack;
    navigation = stack ? stack : navigation;
    peek = std::dynamic_pointer_cast<PeekController>(stack);
    top = stack ? stack->topViewController() : presented;
}

bool ShownControllers::isBusy() const
{
    return search ? search->isBusy() : (list && list->isBusy()) || (preview && preview->isBusy());
}

bool ShownControllers::isCatchingUp() const
{
    return list && list->isCatchingUp();
}

} // namespace tessel
