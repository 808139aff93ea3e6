#include "preview/PreviewItemManager.h"

#include "app/common/Log.h"
#include "app/common/TSDAdditions.h"
#include "files/DRItem.h"
#include "files/FileUtils.h"
#include "files/UIUtils.h"
#include "platform/documents/SearchController.h"
#include "platform/files/FileManager.h"
#include "platform/run/MainQueue.h"
#include "platform/ui/Application.h"
#include "platform/ui/NavigationController.h"
#include "preview/GlanciaItemController.h"
#include "preview/PreviewDownloadViewController.h"

namespace tessel {

PreviewItemManager::PreviewItemManager() : fcQueue_("orvane.TesselDriveApp.preview", QualityOfService::UserInitiated)
{
    auto& notifications = platform::installed().notifications;
    becomeActive_ = notifications.observe(kDidBecomeActiveNotification, [this] { didBecomeActiveNotification(); });
    resignActive_ = notifications.observe(kWillResignActiveNotification, [this] { willResignActiveNotification(); });
    static_cast<void>(currentGlanciaController());
}

PreviewItemManager::~PreviewItemManager()
{
    unregisterAsFilePresenter();
}

std::shared_ptr<PreviewItemManager> PreviewItemManager::newItemManagerWithMode(
    std::int32_t mode, const std::shared_ptr<NavigationController>& navigation)
{
    auto manager = std::make_shared<PreviewItemManager>();
    manager->navigationController = navigation;
    manager->mode = mode;
    return manager;
}

void PreviewItemManager::setItem(const std::shared_ptr<DRItem>& item, bool updatePreview)
{
    TSD_FUNCTION("-[PreviewItemManager setItem:updatePreview:]");
    TSD_DEBUG("Previewing %@", item ? item->url() : std::nullopt);
    if (!item || !updatePreview)
        return keep(item);
    if (const auto controller = prepareToPreviewItem(item))
        replaceLastViewController(controller);
}

void PreviewItemManager::keep(const std::shared_ptr<DRItem>& item)
{
    item_ = item;
    const std::lock_guard lock(mutex_);
    itemURL_ = item ? item->url() : std::nullopt;
}

std::shared_ptr<ViewController> PreviewItemManager::prepareToPreviewItem(const std::shared_ptr<DRItem>& item)
{
    TSD_FUNCTION("-[PreviewItemManager prepareToPreviewItem:]");
    if ((item ? item->url() : std::nullopt) != itemURL())
        unregisterAsFilePresenter();
    keep(item);
    if (!item || (!item->isSymlink() && !item->resolvedURL())) {
        TSD_WARNING("no preview URL, nothing to show");
        return nullptr;
    }
    modifiedDate = item->contentModificationDate();
    registerAsFilePresenter();
    DispatchQueue::main().async([weak = weak_from_this(), url = *item->url()] {
        if (const auto self = weak.lock())
            self->lookOnceMore(url);
    });
    const auto& files = platform::installed().files;
    const bool exists = item->resolvedURL() && files.attributes(item->resolvedURL()->path());
    detailsViewController.reset();
    auto controller = mode == kDetails ? createDetailsViewController() : createGlanciaController();
    TSD_DEBUG("Preview: Using %{public}@, %{public}@", controller->className(),
              exists ? StaticText("File Exists") : StaticText("File doesn't exist"));
    return controller;
}

std::shared_ptr<GlanciaItemController> PreviewItemManager::currentGlanciaController()
{
    return GlanciaItemController::defaultController();
}

std::shared_ptr<ViewController> PreviewItemManager::createDetailsViewController()
{
    detailsViewController = PreviewDownloadViewController::detailsViewControllerForItem(*item_);
    detailsViewController->mode = mode;
    detailsViewController->itemManager = weak_from_this();
    return detailsViewController;
}

std::shared_ptr<ViewController> PreviewItemManager::createGlanciaController()
{
    auto controller = currentGlanciaController();
    controller->glanciaNewItem(shared_from_this());
    return controller;
}

void PreviewItemManager::replaceLastViewController(const std::shared_ptr<ViewController>& controller)
{
    const auto navigation = navigationController.lock();
    if (!navigation)
        return;
    if (isPreviewControllerDisplayed(navigation->topViewController())) {
        auto stack = navigation->viewControllers();
        stack.back() = controller;
        return navigation->setViewControllers(std::move(stack), Animated::No);
    }
    if (!std::dynamic_pointer_cast<SearchController>(navigation->presentedViewController()))
        return navigation->pushViewController(controller, Animated::Yes);
    navigation->dismiss(Animated::Yes);
    DispatchQueue::main().async([weak = weak_from_this(), controller] {
        if (const auto self = weak.lock())
            self->replaceLastViewController(controller);
    });
}

bool PreviewItemManager::isPreviewControllerDisplayed(const std::shared_ptr<ViewController>& controller)
{
    return std::dynamic_pointer_cast<PreviewBaseViewController>(controller) ||
           std::dynamic_pointer_cast<GlanciaItemController>(controller);
}

bool PreviewItemManager::shows(const std::shared_ptr<ViewController>& controller) const
{
    if (const auto details = std::dynamic_pointer_cast<PreviewBaseViewController>(controller))
        return details->itemManager.lock().get() == this;
    const auto preview = std::dynamic_pointer_cast<GlanciaItemController>(controller);
    return preview && preview->itemManager.lock().get() == this;
}

bool PreviewItemManager::isOnTop() const
{
    const auto navigation = navigationController.lock();
    return navigation && shows(navigation->topViewController());
}

void PreviewItemManager::viewControllerWillDisappear(const ViewController& controller)
{
    if (detailsViewController.get() == &controller)
        detailsViewController.reset();
}

void PreviewItemManager::showWarningAndDeleteDocument(const std::shared_ptr<ViewController>& controller,
                                                      const std::shared_ptr<BarButtonItem>& barButton)
{
    const auto url = itemURL();
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
            const auto now = self->itemURL();
            if (const auto error = now ? FileUtils::remove(*now) : std::nullopt)
                self->showDeletionError(*error, controller);
        });
}

// The item was said to be deleted, and then was not.
void PreviewItemManager::showDeletionError(const Error& error, const std::shared_ptr<ViewController>& controller)
{
    deletionFailed_ = isLeaving_;
    UIUtils::showError(error, controller);
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

bool PreviewItemManager::warpToNewURL(const URL& url)
{
    TSD_FUNCTION("-[PreviewItemManager warpToNewURL:]");
    const auto lists = dlcStackForURL(url);
    if (!lists)
        return false;
    NavigationController::Stack stack(lists->begin(), lists->end());
    TSD_DEBUG("New VC stack of DLCs: %@", describe(stack));
    unregisterAsFilePresenter();
    const auto item = DRItem::initWithURL(url);
    if (item && !item->isDirectory())
        if (const auto controller = prepareToPreviewItem(item))
            stack.push_back(controller);
    if (const auto navigation = navigationController.lock()) {
        navigation->dismiss(Animated::No);
        navigation->setViewControllers(std::move(stack), Animated::Yes);
    }
    setItem(item, false);
    return true;
}

} // namespace tessel
