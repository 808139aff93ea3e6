#include "app/common/Log.h"
#include "browser/NavController.h"
#include "files/DRItem.h"
#include "preview/PreviewItemManager.h"

namespace tessel {

bool NavController::documentListControllerCanPerformAction(const DocumentListController&, ListAction action) const
{
    return action != ListAction::Share && action != ListAction::Move && action != ListAction::More;
}

void NavController::documentListControllerPerformAction(DocumentListController&, int action, const URL& url,
                                                        const std::shared_ptr<View>& originatingView,
                                                        const std::function<void()>& completion)
{
    TSD_FUNCTION("-[NavController documentListController:performAction:URL:originatingView:completion:]");
    switch (static_cast<ListAction>(action)) {
    case ListAction::Delete:
        TSD_USER_ACTION("DLC Action Delete");
        performActionCompletionBlock = completion;
        showWarningAndDeleteURLs({url}, originatingView, completion);
        return;
    case ListAction::More:
        TSD_USER_ACTION("DLC Action More");
        TSD_ERROR("performAction:%{public}@ -- More is deprecated, unexpected value", action);
        return;
    case ListAction::Info: {
        TSD_USER_ACTION("DLC Action Info");
        TSD_INFO("Info action: %@", url);
        const auto item = DRItem::initWithURL(url);
        TSD_INFO("Info action item: %@", item);
        showPreview(item, PreviewItemManager::kDetails);
        break;
    }
    case ListAction::Rename:
        TSD_USER_ACTION("DLC Action Rename");
        TSD_INFO("Rename action: %@", url);
        showRenamePrompt(url);
        break;
    case ListAction::Pop:
        TSD_USER_ACTION("DLC Action Pressa Pop");
        TSD_INFO("Preview action: %@", url);
        if (completion)
            completion();
        pressaPopToURL(url);
        return;
    default:
        TSD_ERROR("performAction:%{public}@ -- unexpected value", action);
        break;
    }
    if (completion)
        completion();
}

} // namespace tessel
