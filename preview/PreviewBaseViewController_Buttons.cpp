#include "app/common/Log.h"
#include "app/common/TSDAdditions.h"
#include "files/DRItem.h"
#include "files/LaunchUtils.h"
#include "files/UIUtils.h"
#include "platform/ui/Button.h"
#include "platform/ui/NavigationController.h"
#include "preview/PreviewBaseViewController.h"
#include "preview/PreviewItemManager.h"

namespace tessel {

namespace {

constexpr double kSpace = 0; ///< points: the bar's own spaces are enough

std::shared_ptr<DRItem> itemOf(const std::weak_ptr<PreviewItemManager>& itemManager)
{
    const auto manager = itemManager.lock();
    return manager ? manager->item() : nullptr;
}

} // namespace

std::function<void()> PreviewBaseViewController::actionOf(Action action) const
{
    return [weak = std::weak_ptr(shared_from_this()), action] {
        if (const auto self = std::dynamic_pointer_cast<const PreviewBaseViewController>(weak.lock()))
            (const_cast<PreviewBaseViewController&>(*self).*action)();
    };
}

void PreviewBaseViewController::configureButtons()
{
    using System = BarButtonItem::System;
    barButtonMoveItem = BarButtonItem::system(System::Organize, actionOf(&PreviewBaseViewController::showMoveTarget));
    barButtonDeleteItem =
        BarButtonItem::system(System::Trash, actionOf(&PreviewBaseViewController::showWarningAndDeleteDocument));
    barButtonActionItem =
        BarButtonItem::system(System::Action, actionOf(&PreviewBaseViewController::showDocumentActivities));
    std::shared_ptr<BarButtonItem> openIn;
    if (const auto button = openInAppNavControllerButton()) {
        button->pressed = actionOf(&PreviewBaseViewController::openInDefaultApp);
        button->sizeToFit();
        openIn = BarButtonItem::custom(button);
    }
    enableButtons();
    placeButtons(openIn);
}

void PreviewBaseViewController::enableButtons()
{
    const auto item = itemOf(itemManager);
    for (const auto& button : {barButtonActionItem, barButtonDeleteItem, barButtonMoveItem})
        if (button)
            button->setEnabled(item && item->url());
}

void PreviewBaseViewController::placeButtons(const std::shared_ptr<BarButtonItem>& openIn)
{
    constexpr std::int32_t kDetails = 1;
    const auto navigation = navigationController();
    if (UIUtils::vellumMode()) {
        const auto space = BarButtonItem::fixedSpace(kSpace);
        navigationItem.setRightItems({barButtonActionItem, space, barButtonDeleteItem, space, barButtonMoveItem});
        if (navigation)
            navigation->setToolbarHidden(true);
        return;
    }
    const auto space = BarButtonItem::flexibleSpace();
    setToolbarItems({barButtonActionItem, space, barButtonDeleteItem, space, barButtonMoveItem});
    if (navigation)
        navigation->setToolbarHidden(false);
    if (openIn && mode == kDetails)
        navigationItem.setRightItems({openIn});
}

void PreviewBaseViewController::openInDefaultApp()
{
    TSD_FUNCTION("-[PreviewBaseViewController openInDefaultApp:]");
    TSD_USER_ACTION("Pressed Open in <app>");
    const auto item = itemOf(itemManager);
    const auto url = item ? item->url() : std::nullopt;
    if (!url || !LaunchUtils::openInDefaultApp(*url, shared_from_this(), RequireOpenIn::Yes))
        TSD_WARNING("Failed to open document %@ in default app", url);
}

void PreviewBaseViewController::showWarningAndDeleteDocument()
{
    TSD_FUNCTION("-[PreviewBaseViewController showWarningAndDeleteDocument:]");
    TSD_USER_ACTION("Pressed Delete (preview base)");
    if (const auto manager = itemManager.lock())
        manager->showWarningAndDeleteDocument(shared_from_this(), barButtonDeleteItem);
}

void PreviewBaseViewController::showDocumentActivities()
{
    TSD_FUNCTION("-[PreviewBaseViewController showDocumentActivities:]");
    TSD_USER_ACTION("Pressed Share (sheet) button (preview base)");
    const auto manager = itemManager.lock();
    if (!manager || !manager->item() || !manager->item()->url())
        return;
    auto url = manager->item()->resolvedURL();
    if (!url) {
        TSD_WARNING("showDocumentActivities: url is wrong class: %{public}@", StaticText("(null)"));
        return;
    }
    TSD_INFO("showDocumentActivities: %@", url);
    const auto resolved = tsd_URLByResolvingBookmark(*url);
    if (resolved && *resolved != *url) {
        TSD_INFO("URL resolved to %@", resolved);
        url = resolved;
    }
    manager->documentInteractionController = std::make_shared<DocumentInteractionController>(*url);
    manager->documentInteractionController->presentOptionsMenu(barButtonActionItem, Animated::Yes);
}

void PreviewBaseViewController::showMoveTarget()
{
    if (const auto manager = itemManager.lock())
        manager->showMoveTarget(shared_from_this());
}

} // namespace tessel
