#include "app/common/Log.h"
#include "browser/NavController.h"

namespace tessel {

bool NavController::documentListControllerCanPerformAction(const DocumentListController&, ListAction action) const
{
    return action == ListAction::Delete || action == ListAction::Rename;
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
    case ListAction::Rename:
        TSD_USER_ACTION("DLC Action Rename");
        TSD_INFO("Rename action: %@", url);
        showRenamePrompt(url);
        break;
    default:
        TSD_ERROR("performAction:%{public}@ -- unexpected value", action);
        break;
    }
    if (completion)
        completion();
}

} // namespace tessel
