#include "browser/NavController.h"

#include "app/common/Log.h"
#include "browser/MenuEnableChecks.h"
#include "files/FileUtils.h"
#include "files/UIUtils.h"
#include "platform/base/KeyedArchive.h"
#include "platform/cloud/CloudService.h"
#include "platform/cloud/UserDefaults.h"
#include "platform/documents/UnavailableViewController.h"
#include "platform/run/MainQueue.h"
#include "platform/text/TextServices.h"
#include "platform/ui/Application.h"
#include "preview/PreviewItemManager.h"

namespace tessel {

namespace {

constexpr const char* kIdentityTokenKey = "orvane.TesselDriveApp.UbiquityIdentityToken";

constexpr std::uint32_t bit(ListAction action)
{
    return 1U << static_cast<unsigned>(action);
}

/// The item's path, shortened for the log: the folder above the presented one is "...".
std::string shortenedPath(const URL& item, const URL& presented)
{
    const auto parent = presented.deletingLastPathComponent().path();
    auto path = item.path();
    for (auto at = path.find(parent); at != std::string::npos; at = path.find(parent, at + 3))
        path.replace(at, parent.size(), "...");
    return path;
}

NavigationController::Stack stackOf(const DocumentListController::Hierarchy& lists)
{
    return {lists.begin(), lists.end()};
}

std::optional<Data> storedToken()
{
    const auto stored = platform::installed().defaults.value(kIdentityTokenKey);
    const auto* archive = stored.get<Data>();
    if (!archive)
        return std::nullopt;
    const auto token = keyedArchive::unarchived(archive->bytes);
    const auto* data = token ? token->get<Data>() : nullptr;
    return data ? std::optional(*data) : std::nullopt;
}

} // namespace

void NavController::viewDidLoad()
{
    auto& notifications = platform::installed().notifications;
    NavigationController::delegate = this;
    becomeActive_ = notifications.observe(kDidBecomeActiveNotification, [this] { didBecomeActiveNotification(); });
    identityChanged_ =
        notifications.observe(kCloudIdentityChangedNotification, [this] { tesselAccountAvailabilityChanged(); });
    setupInitialViewController();
    NavigationController::viewDidLoad();
    followOffers();
}

void NavController::setupInitialViewController()
{
    TSD_FUNCTION("-[NavController setupInitialViewController]");
    pickerIsAlive = false;
    if (checkTesselState())
        showDrive();
    else
        showUnavailable();
    TSD_DEBUG("%{public}@ viewDidLoad", className());
}

void NavController::showDrive()
{
    TSD_FUNCTION("-[NavController setupInitialViewController]");
    TSD_DEBUG("Tessel is enabled");
    setToolbarHidden(false);
    if (const auto list = DocumentListController::create()) {
        TSD_DEBUG("Contained items: %@", list->containedItemURLs());
        initNewListController(*list);
        setViewControllers({list}, Animated::No);
    } else {
        TSD_ERROR("Creating the document list controller failed");
    }
    startQuotaFetcher();
}

void NavController::showUnavailable()
{
    TSD_FUNCTION("-[NavController setupInitialViewController]");
    TSD_WARNING("Tessel is not enabled");
    dismiss(Animated::No); // what belongs to the drive that was there
    dropItemManager();
    if (const auto unavailable = UnavailableViewController::create())
        setViewControllers({unavailable}, Animated::No);
    else
        tellUnavailable();
    setToolbarHidden(true);
    quotaFetcher = nullptr;
    quotaBytes = 0;
}

void NavController::tellUnavailable()
{
    TSD_FUNCTION("-[NavController setupInitialViewController]");
    TSD_ERROR("Creating the unavailable view controller failed");
    DispatchQueue::main().async([self = shared_from_this()] {
        UIUtils::showAlert("", platform::installed().text.localized("Tessel is not enabled"), self);
    });
}

bool NavController::checkTesselState() const
{
    return platform::installed().cloud.identityToken().has_value();
}

std::shared_ptr<DocumentListController> NavController::getTopDocumentListController() const
{
    TSD_FUNCTION("-[NavController getTopDocumentListController]");
    const auto top = topViewController();
    if (!top)
        TSD_WARNING("ERROR: topViewController is nil");
    return std::dynamic_pointer_cast<DocumentListController>(top);
}

void NavController::initNewListController(DocumentListController& list)
{
    TSD_FUNCTION("-[NavController initNewListController:]");
    viewTitle = list.title();
    TSD_DEBUG("New DLC (%d items): \"%@\", UTI=%@, URL=%@", list.containedItemCount(), list.title(),
              FileUtils::getResourceValue(ResourceKey::TypeIdentifier, list.presentedURL()), list.presentedURL());
    if (platform::installed().log.isEnabled(LogType::Debug))
        for (const auto& item : list.containedItemURLs())
            TSD_DEBUG("    %@", shortenedPath(item, list.presentedURL()));
    list.offeredActions = bit(ListAction::Delete) | bit(ListAction::Rename) | bit(ListAction::Share) |
                          bit(ListAction::Info) | bit(ListAction::Move) | bit(ListAction::Pop);
    configureNavBar(list);
    if (list.title().empty())
        TSD_WARNING("Warning: newList title not set");
    list.view().setBackgroundColor(Color::white());
    configureToolbar(list);
    list.delegate = std::static_pointer_cast<NavController>(shared_from_this());
}

void NavController::didBecomeActiveNotification()
{
    TSD_FUNCTION("-[NavController didBecomeActiveNotification:]");
    TSD_INFO("(nav) Did become active");
    handleAccountChanges();
}

void NavController::tesselAccountAvailabilityChanged()
{
    TSD_FUNCTION("-[NavController tesselAccountAvailabilityChanged:]");
    TSD_INFO("Tessel account availability changed");
    handleAccountChanges();
}

void NavController::handleAccountChanges()
{
    TSD_FUNCTION("-[NavController handleAccountChanges]");
    const auto token = platform::installed().cloud.identityToken();
    if (token == storedToken()) {
        TSD_DEBUG("Tessel Token Matches");
        return;
    }
    TSD_INFO("Tessel Token Changed, enabled=%{public}@, reinitializing view", token.has_value());
    saveTesselToken(token);
    setupInitialViewController();
}

void NavController::saveTesselToken(const std::optional<Data>& token)
{
    platform::installed().defaults.set(kIdentityTokenKey,
                                       token ? Value(Data{keyedArchive::archived(*token)}) : Value());
}

void NavController::navigationControllerDidShowViewController(NavigationController&,
                                                              const std::shared_ptr<ViewController>& shown, Animated)
{
    const auto list = std::dynamic_pointer_cast<DocumentListController>(shown);
    if (!list)
        return;
    dropItemManager();
    if (editMode)
        editMode = list->editing();
    updateStatusUI(list);
    initNewListController(*list);
    if (editMode) // the buttons are new ones
        barButtonNewFolder->setEnabled(MenuEnableChecks::canEnableNewFolderForSelectedItems(*list));
    setToolbarHidden(false);
}

void NavController::documentListControllerURLWasRemoved(DocumentListController&)
{
    popViewController(Animated::Yes);
}

bool NavController::warpToFolderForURL(const URL& folder)
{
    const auto stack = PreviewItemManager::dlcStackForURL(folder);
    if (!stack)
        return false;
    setViewControllers(stackOf(*stack), Animated::No);
    return true;
}

void NavController::startSearch(const std::string& query)
{
    dismiss(Animated::No);
    popToRootViewController(Animated::No);
    DispatchQueue::main().after(0.7, [self = std::static_pointer_cast<NavController>(shared_from_this()), query] {
        const auto list = self->getTopDocumentListController();
        if (!list)
            return;
        list->startSearch(query);
        list->makeSearchFieldFirstResponder();
    });
}

void NavController::logContainerURL() const
{
    TSD_FUNCTION("-[NavController logContainerURL]");
    if (const auto container = platform::installed().cloud.defaultContainer())
        TSD_DEBUG("Tessel container is at %{public}@", container->documentsURL);
    else
        TSD_DEBUG("Tessel is not available");
}

} // namespace tessel
