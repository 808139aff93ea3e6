#include "app/common/Log.h"
#include "files/DRItem.h"
#include "files/UIUtils.h"
#include "platform/base/Platform.h"
#include "platform/text/TextServices.h"
#include "platform/ui/NavigationController.h"
#include "preview/PreviewDetailsViewController.h"

namespace tessel {

namespace {

constexpr double kWhileIdle = -16; ///< of the field's width, to that of what it lies in

} // namespace

void PreviewDetailsViewController::viewWasTapped()
{
    forceRenameDone();
}

void PreviewDetailsViewController::forceRenameDone()
{
    if (filenameTextField->isFirstResponder())
        filenameTextField->resignFirstResponder();
}

void PreviewDetailsViewController::forceRenameCancel()
{
    filenameTextField->setText(originalFilename.value_or(""));
    forceRenameDone();
}

void PreviewDetailsViewController::updateNavBarForRename(bool isRenaming)
{
    using System = BarButtonItem::System;
    if (!isRenaming) {
        navigationItem.setTitle("");
        navigationItem.setLeftItemsSupplementBackButton(false);
        navigationItem.setLeftItems({});
        navigationItem.setHidesBackButton(false);
        navigationItem.setRightItems({});
        navigationItem.setRightItems(originalRightBarButtonItems);
        return;
    }
    navigationItem.setTitle(platform::installed().text.localized("Rename File"));
    originalRightBarButtonItems = navigationItem.rightItems();
    navigationItem.setHidesBackButton(true);
    const auto cancel = static_cast<Action>(&PreviewDetailsViewController::forceRenameCancel);
    navigationItem.setLeftItems({BarButtonItem::system(System::Cancel, actionOf(cancel))});
    navigationItem.setLeftItemsSupplementBackButton(true);
    const auto done = static_cast<Action>(&PreviewDetailsViewController::forceRenameDone);
    navigationItem.setRightItems({BarButtonItem::system(System::Done, actionOf(done))});
}

/// The return key is a line break, which no name has.
bool PreviewDetailsViewController::textFieldShouldChangeCharacters(TextField& field, std::size_t, std::size_t,
                                                                   const std::string& replacement)
{
    if (replacement != "\n")
        return true;
    field.resignFirstResponder();
    return false;
}

bool PreviewDetailsViewController::textFieldShouldReturn(TextField& field)
{
    TSD_FUNCTION("-[PreviewDetailsViewController textFieldShouldReturn:]");
    TSD_DEBUG("textFieldShouldReturn");
    field.resignFirstResponder();
    return true;
}

bool PreviewDetailsViewController::textFieldShouldBeginEditing(TextField&)
{
    TSD_FUNCTION("-[PreviewDetailsViewController textFieldShouldBeginEditing:]");
    const auto item = this->item();
    const bool isRenameable = item && item->renameable();
    TSD_DEBUG("ShouldBeginEditing: %{public}@", isRenameable);
    return isRenameable;
}

void PreviewDetailsViewController::textFieldDidBeginEditing(TextField& field)
{
    TSD_FUNCTION("-[PreviewDetailsViewController textFieldDidBeginEditing:]");
    const auto item = this->item();
    TSD_DEBUG("DidBeginEditing '%@' = '%@'", originalFilename, item ? item->localizedName() : std::nullopt);
    if (item && !item->hasHiddenExtension())
        UIUtils::setCursorInTextFieldToBeforeExtension(field);
    updateNavBarForRename(true);
    filenameTextFieldFullWidthConstraint->setConstant(0);
}

bool PreviewDetailsViewController::textFieldShouldEndEditing(TextField& field)
{
    TSD_FUNCTION("-[PreviewDetailsViewController textFieldShouldEndEditing:]");
    TSD_DEBUG("ShouldEndEditing: old:'%@', new:'%@'", originalFilename, field.text());
    if (isUnderAnother())
        return true;
    if (field.text().empty())
        field.setText(originalFilename.value_or(""));
    return field.text() == originalFilename || rename(field);
}

/// Whether something lies over the view, such as the alert of a rename that has failed.
bool PreviewDetailsViewController::isUnderAnother() const
{
    const auto navigation = navigationController();
    return presentedViewController() || (navigation && navigation->presentedViewController());
}

bool PreviewDetailsViewController::rename(TextField& field)
{
    const auto item = this->item();
    const auto url = item ? item->url() : std::nullopt;
    const auto& name = field.text();
    if (!url)
        return true;
    if (const auto error = UIUtils::renameItemAtURL(*url, name)) {
        UIUtils::showFriendlyRenameError(*error, name, shared_from_this());
        return false;
    }
    originalFilename = name;
    return true;
}

void PreviewDetailsViewController::textFieldDidEndEditing(TextField& field)
{
    TSD_FUNCTION("-[PreviewDetailsViewController textFieldDidEndEditing:]");
    TSD_DEBUG("DidEndEditing: old:'%@', new:'%@'", originalFilename, field.text());
    updateNavBarForRename(false);
    filenameTextFieldFullWidthConstraint->setConstant(kWhileIdle);
}

} // namespace tessel
