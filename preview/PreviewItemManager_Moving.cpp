#include "app/common/Log.h"
#include "app/common/TSDAdditions.h"
#include "files/FileUtils.h"
#include "files/NewFolderPrompt.h"
#include "files/UIUtils.h"
#include "platform/ui/NavigationController.h"
#include "preview/PreviewItemManager.h"

namespace tessel {

void PreviewItemManager::showMoveTarget(const std::shared_ptr<ViewController>& controller)
{
    TSD_FUNCTION("-[PreviewItemManager showMoveTarget:]");
    TSD_INFO("Pressed Move (itemMgr)");
    const auto url = itemURL();
    const auto navigation = controller->navigationController();
    if (!url || !navigation)
        return;
    using Picker = DocumentTargetSelectionController;
    const auto picker = Picker::create({*url}, tsd_canCrossZoneMoveURLs({*url}) ? Picker::Kind::AcrossContainers
                                                                                : Picker::Kind::WithinContainer);
    if (!picker)
        return;
    picker->targetDelegate = shared_from_this();
    navigation->present(picker, Animated::Yes, [] {
        TSD_FUNCTION("-[PreviewItemManager showMoveTarget:]_block_invoke");
        TSD_DEBUG("Presented moveTarget");
    });
}

void PreviewItemManager::documentTargetSelectionControllerDidSelectItemAtURL(DocumentTargetSelectionController& picker,
                                                                             const URL& target)
{
    TSD_FUNCTION("-[PreviewItemManager documentTargetSelectionController:didSelectItemAtURL:]");
    const auto items = picker.itemsToMove();
    TSD_DEBUG("MoveTarget = %@", target);
    TSD_DEBUG("ItemsToMove = %@", items);
    picker.end();
    const auto navigation = navigationController.lock();
    for (const auto& item : items)
        if (const auto error = FileUtils::move(item, target.appending(item.lastPathComponent())); error && navigation)
            UIUtils::showFriendlyMoveError(*error, navigation->topViewController());
}

void PreviewItemManager::documentTargetSelectionControllerWantsNewFolder(DocumentTargetSelectionController& picker,
                                                                         const URL& folder,
                                                                         const std::function<void(const URL&)>& made)
{
    folderPrompt_ = NewFolderPrompt::newInFolder(folder, made);
    picker.present(folderPrompt_->alert, Animated::Yes);
}

} // namespace tessel
