#include "app/common/Log.h"
#include "browser/NavController.h"
#include "files/DRItem.h"
#include "preview/PreviewItemManager.h"

namespace tessel {

bool NavController::documentListControllerCanPerformAction(const DocumentListController&, ListAction action) const
{
    return action != ListAction::More;
}

void NavController::documentListControllerPerformAction(DocumentListController& list, int action, const URL& url,
                                                        const std::shared_ptr<View>& originatingView,
                                                        const std::function<void()>& completion)
{
    TSD_FUNCTION("-[NavController documentListController:performAction:URL:originatingView:completion:]");
    const auto complete = completion ? completion : [] {};
    switch (static_cast<ListAction>(action)) {
    case ListAction::Delete:
        TSD_USER_ACTION("DLC Action Delete");
        performActionCompletionBlock = completion;
        return showWarningAndDeleteURLs({url}, originatingView, nullptr, complete);
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
        return complete();
    }
    case ListAction::Rename:
        TSD_USER_ACTION("DLC Action Rename");
        TSD_INFO("Rename action: %@", url);
        showRenamePrompt(url);
        return complete();
    case ListAction::Share:
        TSD_USER_ACTION("DLC Action Share (share sheet)");
        TSD_INFO("Activity (share) action: %@", url);
        complete();
        return showDIC(originatingView, url, completion);
    case ListAction::Move:
        TSD_USER_ACTION("DLC Action Move");
        TSD_INFO("Move action: %@", url);
        showMoveTargetForItems({url}, list.presentedURL());
        return complete();
    case ListAction::Pop:
        TSD_USER_ACTION("DLC Action Pressa Pop");
        TSD_INFO("Preview action: %@", url);
        complete();
        return pressaPopToURL(url);
    }
    TSD_ERROR("performAction:%{public}@ -- unexpected value", action);
    complete();
}

} // namespace tessel
