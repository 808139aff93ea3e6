#include "platform/documents/UpgradeFlowManager.h"

#include "platform/documents/UpgradeViewController.h"
#include "platform/ui/NavigationController.h"

namespace tessel {

void UpgradeFlowManager::beginFlow(ViewController& presentingController) const
{
    if (!offer_)
        return;
    const auto pages = std::make_shared<NavigationController>();
    pages->setViewControllers({std::make_shared<UpgradeViewController>(*offer_)}, Animated::No);
    presentingController.present(pages, Animated::Yes);
}

} // namespace tessel
