#include "app/common/Log.h"
#include "app/common/TSDAdditions.h"
#include "browser/NavController.h"
#include "browser/PeekFolderViewController.h"
#include "files/DRItem.h"
#include "files/LaunchUtils.h"
#include "platform/cloud/CloudService.h"
#include "platform/documents/SearchController.h"
#include "platform/files/ResourceValues.h"
#include "platform/ui/StateCoder.h"
#include "preview/GlanciaItemController.h"
#include "preview/PreviewItemManager.h"

#include <utility>

namespace tessel {

namespace {

constexpr const char* kURLKey = "url";
constexpr const char* kPreviewModeKey = "PreviewMode";

/// What an item is, also before it is on the device.
class ItemKind {
public:
    explicit ItemKind(const URL& url)
    {
        constexpr ResourceKey kKeys[] = {ResourceKey::IsPackage, ResourceKey::IsRegularFile, ResourceKey::IsDirectory};
        if (auto values = platform::installed().resources.values(kKeys, url, ValueVariant::Promised))
            values_ = std::move(values.value());
    }

    [[nodiscard]] bool is(ResourceKey key) const
    {
        const auto found = values_.find(key);
        const auto* flag = found == values_.end() ? nullptr : found->second.get<bool>();
        return flag && *flag;
    }

private:
    ResourceValues::Values values_;
};

} // namespace

std::int32_t NavController::previewModeFor(const DRItem& item)
{
    return item.canPreview() ? PreviewItemManager::kQuickPreview : PreviewItemManager::kDetails;
}

void NavController::dropItemManager()
{
    if (itemManager)
        itemManager->unregisterAsFilePresenter();
    itemManager.reset();
}

std::shared_ptr<PreviewItemManager> NavController::newItemManager(std::int32_t previewMode)
{
    return PreviewItemManager::newItemManagerWithMode(
        previewMode, std::static_pointer_cast<NavigationController>(shared_from_this()));
}

void NavController::useNewItemManager(std::int32_t previewMode)
{
    dropItemManager();
    itemManager = newItemManager(previewMode);
}

void NavController::documentListControllerPeekWasReleased(DocumentListController& list)
{
    if (getTopDocumentListController().get() == &list)
        dropItemManager();
}

void NavController::showPreview(const std::shared_ptr<DRItem>& item, std::int32_t previewMode)
{
    if (!item)
        return;
    useNewItemManager(previewMode);
    itemManager->previewItem(item);
}

bool NavController::warpToNewURL(const std::optional<URL>& url, std::int32_t previewMode)
{
    TSD_FUNCTION("-[NavController warpToNewURL:previewMode:]");
    dismiss(Animated::No);
    if (!url || !checkTesselState())
        return false;
    const auto& cloud = platform::installed().cloud;
    if (!cloud.isInDrive(*url)) {
        TSD_DEBUG("Preview URL is not inside the drive folder: %@", *url);
        return false;
    }
    if (cloud.isInTrash(*url)) {
        TSD_DEBUG("Preview URL is in Trash: %@", *url);
        return false;
    }
    const auto resolved = tsd_URLByResolvingPromise(*url);
    const auto manager = newItemManager(previewMode);
    if (!manager->warpToNewURL(resolved)) {
        TSD_WARNING("warpToNewURL failed: %@", resolved);
        return false;
    }
    dropItemManager();
    itemManager = manager;
    return true;
}

std::shared_ptr<ViewController> NavController::documentListControllerViewControllerForPreviewingItemAtURL(
    DocumentListController&, const URL& url)
{
    TSD_FUNCTION("-[NavController documentListController:viewControllerForPreviewingItemAtURL:]");
    TSD_USER_ACTION("DLC Action Pressa Peek");
    TSD_DEBUG("DLC asking for PeekVC for %@", url);
    const ItemKind kind(url);
    if (kind.is(ResourceKey::IsPackage) || kind.is(ResourceKey::IsRegularFile)) {
        const auto item = DRItem::initWithURL(url);
        useNewItemManager(PreviewItemManager::kQuickPreview);
        return itemManager->prepareToPreviewItem(item);
    }
    if (kind.is(ResourceKey::IsDirectory))
        return std::make_shared<PeekFolderViewController>(url);
    TSD_DEBUG("URL is not a regular file, package, or folder");
    return nullptr;
}

void NavController::pressaPopToURL(const URL& url)
{
    TSD_FUNCTION("-[NavController pressaPopToURL:]");
    const bool isSearching = std::dynamic_pointer_cast<SearchController>(presentedViewController()) != nullptr;
    if (isSearching)
        dismiss(Animated::Yes);
    const auto item = DRItem::initWithURL(url);
    if (item && item->isDirectory()) {
        TSD_DEBUG("Building DLC stack for Pressa of %@", item->url());
        if (const auto stack = PreviewItemManager::dlcStackForURL(*item->url()))
            setViewControllers({stack->begin(), stack->end()}, Animated::Yes);
        else
            TSD_ERROR("Couldn't build DLC stack for %@. Not switching to folder", item->url());
        return;
    }
    if (item && LaunchUtils::openInDefaultApp(*item->url(), topViewController(), RequireOpenIn::Yes)) {
        TSD_DEBUG("openInDefaultApp returned YES, app launched");
        return;
    }
    TSD_DEBUG("openInDefaultApp returned NO, showing cached Glancia from Pressa");
    if (isSearching)
        warpToFolderForURL(url);
    const auto peeked = itemManager ? itemManager->item() : nullptr;
    if (peeked && peeked->url() == url)
        pushViewController(itemManager->currentGlanciaController(), Animated::Yes);
    else if (item) // from a menu, without a peek
        showPreview(item, previewModeFor(*item));
}

void NavController::encodeRestorableState(StateCoder& coder) const
{
    NavigationController::encodeRestorableState(coder);
    const auto item = itemManager ? itemManager->item() : nullptr;
    if (!item || !item->url())
        return;
    coder.encode(kURLKey, *item->url());
    coder.encode(kPreviewModeKey, std::int64_t{itemManager->mode});
}

void NavController::decodeRestorableState(const StateCoder& coder)
{
    NavigationController::decodeRestorableState(coder);
    const auto url = coder.decode(kURLKey);
    const auto* location = url.get<URL>();
    const auto item = location ? DRItem::initWithURL(*location) : nullptr;
    if (!item || item->isDirectory())
        return;
    const auto mode = coder.decode(kPreviewModeKey);
    const auto* number = mode.get<std::int64_t>();
    showPreview(item, number ? static_cast<std::int32_t>(*number) : PreviewItemManager::kQuickPreview);
    comeBackToPlace();
}

} // namespace tessel
