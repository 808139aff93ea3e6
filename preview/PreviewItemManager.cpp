#include "preview/PreviewItemManager.h"

#include "app/common/Log.h"
#include "files/DRItem.h"

namespace tessel {

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
