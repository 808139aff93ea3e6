#include "platform/qt/PageStack.h"

#include "platform/qt/Page.h"
#include "platform/ui/NavigationController.h"

namespace tessel::qt {

bool PageStack::hasToolbar(const NavigationController& navigation, const ViewController& controller)
{
    return !navigation.toolbarHidden() && !controller.toolbarItems().empty();
}

void PageStack::sync(const NavigationController* navigation, BarItems& items)
{
    const auto stack = navigation ? navigation->viewControllers() : NavigationController::Stack{};
    const bool isFirst = presences().empty();
    show(stack, !isFirst && navigation && navigation->lastAnimation() == Animated::Yes);
    for (std::size_t index = 0; index < stack.size(); ++index)
        page(index)->sync(*navigation, index > 0 ? stack[index - 1].get() : nullptr, items);
}

void PageStack::setDark(bool dark)
{
    dark_ = dark;
    for (std::size_t index = 0; index < presences().size(); ++index)
        page(index)->setDark(dark);
}

Presence* PageStack::make(const std::shared_ptr<ViewController>& controller)
{
    return new Page(controller, dark_, this);
}

Page* PageStack::page(std::size_t index) const
{
    return static_cast<Page*>(presences()[index]);
}

} // namespace tessel::qt
