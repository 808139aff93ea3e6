#include "app/common/Log.h"
#include "app/common/Settings.h"
#include "browser/NavController.h"
#include "files/DRItem.h"
#include "files/FileTags.h"
#include "files/LaunchUtils.h"
#include "files/UIUtils.h"
#include "platform/cloud/CloudService.h"
#include "platform/documents/SearchController.h"
#include "platform/run/MainQueue.h"
#include "platform/text/GeneralError.h"
#include "preview/PreviewItemManager.h"

namespace tessel {

namespace {

bool isInDrive(const std::optional<URL>& url)
{
    return url && platform::installed().cloud.isInDrive(*url);
}

/// The item that a link stands for; null for one that leads out of the drive or to nothing.
std::shared_ptr<DRItem> followLink(const DRItem& link)
{
    TSD_FUNCTION("-[NavController documentListController:didSelectItemAtURL:]");
    if (!isInDrive(link.resolvedURL())) {
        TSD_DEBUG("DLC Selection is symlink to outside target: %@", link.resolvedURL());
        return nullptr;
    }
    auto target = DRItem::initWithURL(link.resolvedURL());
    if (!target) {
        TSD_DEBUG("DLC Selection is symlink that didn't resolve to valid target: %@", link.resolvedURL());
        return nullptr;
    }
    if (!isInDrive(target->resolvedURL())) {
        TSD_DEBUG("DLC Selection is symlink to invalid target: %@", target->resolvedURL());
        return nullptr;
    }
    return target;
}

} // namespace

void NavController::documentListControllerDidSelectContainerWithViewController(
    DocumentListController&, const std::shared_ptr<DocumentListController>& newList)
{
    TSD_FUNCTION("-[NavController documentListController:didSelectContainerWithViewController:]");
    TSD_USER_ACTION("Selected Folder (dlc)");
    if (!newList) {
        TSD_WARNING("New DLC is nil");
        return;
    }
    TSD_INFO("User selected folder %@", newList->presentedURL());
    if (editMode) {
        TSD_WARNING("DLC Navigation not allowed while in edit mode");
        return;
    }
    if (std::dynamic_pointer_cast<SearchController>(presentedViewController())) {
        dismiss(Animated::Yes);
        if (warpToFolderForURL(newList->presentedURL()))
            return;
    }
    initNewListController(*newList);
    pushViewController(newList, Animated::Yes);
}

void NavController::documentListControllerDidSelectItemAtURL(DocumentListController&, const URL& url)
{
    TSD_FUNCTION("-[NavController documentListController:didSelectItemAtURL:]");
    TSD_USER_ACTION("Selected Item (dlc)");
    TSD_INFO("Picked URL: %@", url);
    auto item = DRItem::initWithURL(url);
    TSD_DEBUG("DRItem: %@ (%{public}@ bytes %{public}@)", item, item ? item->fileSize() : std::nullopt,
              url.pathExtension());
    if (!item) {
        UIUtils::showError(generalError(ErrorCode::kFileDoesNotExist), topViewController());
        DispatchQueue::main().async([self = std::static_pointer_cast<NavController>(shared_from_this())] {
            self->setupInitialViewController();
        });
        return;
    }
    if (editMode) {
        TSD_DEBUG("DLC Selection not allowed while in edit mode");
        return;
    }
    if (!Settings::quickLaunch())
        return showPreviewSoon(item, PreviewItemManager::kQuickPreview);
    if (item->isSymlink() && !(item = followLink(*item)))
        return;
    if (item->isDirectory())
        return openFolderLink(*item->url());
    if (LaunchUtils::openInDefaultApp(*item->url(), topViewController(), RequireOpenIn::Yes)) {
        TSD_DEBUG("openInDefaultApp returned YES, app launched");
        return;
    }
    TSD_DEBUG("openInDefaultApp returned NO, showing preview");
    showPreviewSoon(item, previewModeFor(*item));
}

void NavController::showPreviewSoon(const std::shared_ptr<DRItem>& item, std::int32_t previewMode)
{
    DispatchQueue::main().async([weak = weak_from_this(), item, previewMode] {
        if (const auto self = std::static_pointer_cast<NavController>(weak.lock()))
            self->showPreview(item, previewMode);
    });
}

std::optional<Color> NavController::documentListControllerColorOfTag(const DocumentListController&,
                                                                     const std::string& tag) const
{
    const auto colors = FileTags::tagColorsByTag();
    const auto found = colors.find(tag);
    return found == colors.end() ? std::nullopt : std::optional(found->second);
}

void NavController::openFolderLink(const URL& folder)
{
    TSD_FUNCTION("-[NavController documentListController:didSelectItemAtURL:]");
    TSD_DEBUG("Building DLC stack for symlink to %@", folder);
    if (const auto stack = PreviewItemManager::dlcStackForURL(folder))
        setViewControllers({stack->begin(), stack->end()}, Animated::Yes);
    else
        TSD_ERROR("Couldn't build DLC stack for %@. Not switching to folder", folder);
}

} // namespace tessel
