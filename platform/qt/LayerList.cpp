#include "platform/qt/LayerList.h"

#include "platform/documents/SearchController.h"
#include "platform/qt/Layer.h"
#include "platform/ui/NavigationController.h"

namespace tessel::qt {

namespace {

void collect(const std::shared_ptr<ViewController>& controller, LayerList::Controllers& found)
{
    if (const auto navigation = std::dynamic_pointer_cast<NavigationController>(controller))
        if (const auto top = navigation->topViewController())
            collect(top, found);
    for (const auto& child : controller->children())
        collect(child, found);
    const auto presented = controller->presentedViewController();
    if (!presented)
        return;
    if (!std::dynamic_pointer_cast<SearchController>(presented))
        found.push_back(presented);
    collect(presented, found);
}

} // namespace

LayerList::Controllers LayerList::presentedBy(const std::shared_ptr<ViewController>& root)
{
    Controllers found;
    if (root)
        collect(root, found);
    return found;
}

void LayerList::follow(const std::shared_ptr<ViewController>& root)
{
    show(presentedBy(root), true);
}

std::vector<Layer*> LayerList::layers() const
{
    std::vector<Layer*> found;
    for (auto* const presence : presences())
        if (presence->phase() != Presence::Leaving)
            found.push_back(static_cast<Layer*>(presence));
    return found;
}

void LayerList::setDark(bool dark)
{
    dark_ = dark;
    for (auto* const presence : presences())
        static_cast<Layer*>(presence)->setDark(dark);
}

Presence* LayerList::make(const std::shared_ptr<ViewController>& controller)
{
    return new Layer(controller, dark_, this);
}

bool LayerList::covers(const Presence& presence) const
{
    return static_cast<const Layer&>(presence).coversWindow();
}

} // namespace tessel::qt
