#include "platform/console/ShownControllers.h"

#include "platform/base/Platform.h"
#include "platform/documents/DocumentListController.h"
#include "platform/documents/SearchController.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/Window.h"

namespace tessel {

ShownControllers ShownControllers::now()
{
    ShownControllers shown;
    const auto window = platform::installed().device.keyWindow();
    if (!window)
        return shown;
    shown.navigation = std::dynamic_pointer_cast<NavigationController>(window->rootViewController());
    if (!shown.navigation)
        return shown;
    shown.top = shown.navigation->topViewController();
    shown.list = std::dynamic_pointer_cast<DocumentListController>(shown.top);
    shown.search = std::dynamic_pointer_cast<SearchController>(shown.navigation->presentedViewController());
    return shown;
}

bool ShownControllers::isBusy() const
{
    return search ? search->isBusy() : list && list->isBusy();
}

} // namespace tessel
