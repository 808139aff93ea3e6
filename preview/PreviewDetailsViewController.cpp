#include "preview/PreviewDetailsViewController.h"

#include "files/DRItem.h"
#include "files/LaunchUtils.h"
#include "files/UIUtils.h"
#include "platform/text/FilledText.h"
#include "platform/ui/Button.h"
#include "preview/FileInfoStackView.h"
#include "preview/PreviewItemManager.h"
#include "preview/ThumbnailImageView.h"

namespace tessel {

std::shared_ptr<PreviewDetailsViewController> PreviewDetailsViewController::self()
{
    return std::static_pointer_cast<PreviewDetailsViewController>(shared_from_this());
}

std::shared_ptr<DRItem> PreviewDetailsViewController::item() const
{
    const auto manager = itemManager.lock();
    return manager ? manager->item() : nullptr;
}

void PreviewDetailsViewController::viewDidLoad()
{
    PreviewBaseViewController::viewDidLoad();
    makeOpenInAppButton();
    setupViewsAndConstraints();
    view().tapped = [weak = std::weak_ptr(self())] {
        if (const auto self = weak.lock())
            self->viewWasTapped();
    };
    registerForKeyboardNotifications();
}

void PreviewDetailsViewController::makeOpenInAppButton()
{
    const auto item = this->item();
    const auto url = item ? item->url() : std::nullopt;
    const auto name = url ? LaunchUtils::defaultAppNameForDocument(*url, RequireOpenIn::Yes) : std::nullopt;
    if (name)
        openInAppButton = std::make_shared<Button>(localizedFilledText("Open in “%@”", {*name}));
}

/// Also after something has covered the whole screen.
void PreviewDetailsViewController::viewWillAppear(Animated animated)
{
    PreviewBaseViewController::viewWillAppear(animated);
    registerForKeyboardNotifications();
}

void PreviewDetailsViewController::viewWillDisappear(Animated animated)
{
    originalFilename = filenameTextField->text();
    unregisterForKeyboardNotifications();
    PreviewBaseViewController::viewWillDisappear(animated);
}

bool PreviewDetailsViewController::shouldDisplayOpenInAppButtonInView() const
{
    return openInAppButton && UIUtils::vellumMode();
}

std::shared_ptr<Button> PreviewDetailsViewController::openInAppNavControllerButton()
{
    return shouldDisplayOpenInAppButtonInView() ? nullptr : openInAppButton;
}

/// What the user is typing stays, unless the item has another name now.
void PreviewDetailsViewController::refreshItem()
{
    PreviewBaseViewController::refreshItem();
    if (!isViewLoaded())
        return;
    const auto item = this->item();
    const auto name = item ? item->localizedName() : std::nullopt;
    fileInfoView->setItem(item);
    if (!filenameTextField->isFirstResponder() || name != originalFilename)
        filenameTextField->setText(name.value_or(""));
    originalFilename = name;
    filenameTextField->setPlaceholder("");
    thumbnailView->setItem(item);
}

} // namespace tessel
