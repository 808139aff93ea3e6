#include "preview/PreviewItemManager.h"

#include "app/common/Log.h"
#include "files/DRItem.h"
#include "files/FileUtils.h"
#include "files/UIUtils.h"
#include "preview/PreviewBaseViewController.h"

namespace tessel {

void PreviewItemManager::viewControllerWillDisappear(const ViewController& controller)
{
    if (detailsViewController.get() == &controller)
        detailsViewController.reset();
}

void PreviewItemManager::showWarningAndDeleteDocument(const std::shared_ptr<ViewController>& controller,
                                                      const std::shared_ptr<BarButtonItem>& barButton)
{
    const auto url = item ? item->url() : std::nullopt;
    if (!url)
        return;
    UIUtils::showDeleteWarningAlert(
        {*url}, false, controller, nullptr, barButton,
        [self = shared_from_this(), controller](const std::shared_ptr<AlertAction>&, bool cancelled) {
            TSD_FUNCTION("-[PreviewItemManager showWarningAndDeleteDocument:barButton:]_block_invoke");
            if (cancelled) {
                TSD_USER_ACTION("Delete was Cancelled (itemMgr)");
                return;
            }
            TSD_USER_ACTION("Delete was Confirmed (itemMgr)");
            const auto now = self->item ? self->item->url() : std::nullopt;
            if (const auto error = now ? FileUtils::remove(*now) : std::nullopt)
                UIUtils::showError(error, controller);
        });
}

void PreviewItemManager::showMoveTarget(const std::shared_ptr<ViewController>&)
{
    TSD_FUNCTION("-[PreviewItemManager showMoveTarget:]");
    TSD_INFO("Pressed Move (itemMgr)");
}

std::optional<DocumentListController::Hierarchy> PreviewItemManager::dlcStackForURL(const URL& url)
{
    TSD_FUNCTION("+[PreviewItemManager dlcStackForURL:]");
    auto folder = url;
    auto item = DRItem::initWithURL(folder);
    if (item && !item->isDirectory()) {
        folder = url.deletingLastPathComponent();
        item = DRItem::initWithURL(folder);
    }
    if (!item || !item->isDirectory()) {
        TSD_ERROR("Can't build DLC stack, can't get directory: %@", url);
        return std::nullopt;
    }
    auto stack = DocumentListController::listControllerHierarchyForURL(folder);
    if (!stack)
        TSD_ERROR(": Couldn't build DLC stack for %@.", folder);
    return stack;
}

} // namespace tessel
