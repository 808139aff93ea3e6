#include "browser/DocumentListControllerStatusBar.h"

#include "app/common/Log.h"
#include "platform/ui/Device.h"

namespace tessel {

void DocumentListControllerStatusBar::createStatusBar(
    const std::optional<StorageOffer>& offer,
    const std::shared_ptr<DocumentListControllerStatusBarDelegate>& buttonPressDelegate)
{
    delegate = buttonPressDelegate;
    labelsView = std::make_shared<DriveStatusLabelView>(platform::installed().device.statusBarFrame);
    configureLabels(offer);
    toolbarItems = {BarButtonItem::flexibleSpace(), BarButtonItem::custom(labelsView), BarButtonItem::flexibleSpace()};
}

void DocumentListControllerStatusBar::configureLabels(const std::optional<StorageOffer>& offer)
{
    const auto label = std::make_shared<Label>();
    label->setFont(Font::ofStyle(TextStyle::Caption2));
    label->sizeToFit();
    labelsView->primaryLabel = label;
    labelsView->addSubview(label);

    const auto button = UpgradeButton::create();
    button->setOffer(offer);
    button->pressed = [weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->upgradeStoragePressed(*self->labelsView->quotaButton);
    };
    button->sizeToFit();
    button->setHidden(true);
    labelsView->quotaButton = button;
    labelsView->addSubview(button);

    showLowQuotaFor(offer);
}

void DocumentListControllerStatusBar::setStatusText(const std::string& text)
{
    labelsView->setPrimaryLabelText(text);
}

void DocumentListControllerStatusBar::showUpgradeOffer(const std::optional<StorageOffer>& offer)
{
    if (labelsView->quotaButton->offer() != offer)
        labelsView->quotaButton->setOffer(offer);
    showLowQuotaFor(offer);
}

void DocumentListControllerStatusBar::showLowQuotaFor(const std::optional<StorageOffer>& offer)
{
    labelsView->showLowQuota(offer && UpgradeButton::shouldShowForOffer(*offer));
}

void DocumentListControllerStatusBar::upgradeStoragePressed(const UpgradeButton& button)
{
    TSD_FUNCTION("-[DocumentListControllerStatusBar upgradeStoragePressed:]");
    TSD_USER_ACTION("Pressed Upgrade Storage");
    const auto link = button.link();
    TSD_INFO("UpgradeStorage button pressed, link.action=%{public}@", link.action);
    if (performAction(link)) {
        TSD_INFO("UpgradeStorage button pressed, launched default action (Manage Storage?)");
        return;
    }
    const auto told = delegate.lock();
    if (told && link.action == OfferLink::kUpgradeFlow)
        told->upgradeStorageButtonPressed();
}

} // namespace tessel
