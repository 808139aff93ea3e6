#include "app/common/Log.h"
#include "browser/MenuEnableChecks.h"
#include "browser/NavController.h"
#include "platform/text/FilledText.h"
#include "platform/text/TextServices.h"
#include "platform/ui/Button.h"

#include <charconv>

namespace tessel {

namespace {

/// How many items the lists had when that was last logged.
std::size_t lastLoggedCount = 0;

std::shared_ptr<BarButtonItem> toolbarButton(const char* title, std::function<void()> action)
{
    auto button = std::make_shared<Button>(platform::installed().text.localized(title));
    button->pressed = std::move(action);
    button->sizeToFit();
    return BarButtonItem::custom(std::move(button));
}

/// The number that a text begins with; 0 without one.
double leadingNumber(const std::string& text)
{
    double number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
    return number;
}

} // namespace

/// What a control of the program does: it may outlive the controller.
std::function<void()> NavController::action(void (NavController::*operation)())
{
    return [weak = weak_from_this(), operation] {
        if (const auto self = std::static_pointer_cast<NavController>(weak.lock()))
            ((*self).*operation)();
    };
}

void NavController::beginEditMode()
{
    TSD_FUNCTION("-[NavController beginEditMode:]");
    TSD_USER_ACTION("Pressed Select (begin edit)");
    TSD_INFO("Begin Edit mode");
    setEditModeAndUpdateUI(true, getTopDocumentListController());
}

void NavController::endEditMode()
{
    TSD_FUNCTION("-[NavController endEditMode:]");
    TSD_USER_ACTION("Pressed Cancel (end edit)");
    const auto list = getTopDocumentListController();
    TSD_DEBUG("EndEditMode.  Selected %d items: %@", list ? list->selectedItems().count : 0,
              list ? list->selectedItemURLs() : std::vector<URL>());
    setEditModeAndUpdateUI(false, list);
}

void NavController::selectAllItems()
{
    TSD_FUNCTION("-[NavController selectAllItems:]");
    TSD_USER_ACTION("Pressed SelectAll");
    TSD_INFO("Pressed SelectAll");
    const auto list = getTopDocumentListController();
    if (!list)
        return;
    TSD_DEBUG("DLC has %d contained items", list->containedItemCount());
    list->selectAllRows();
    TSD_DEBUG("Selected all %d: %@", list->selectedItems().count, list->selectedItemURLs());
}

void NavController::setEditModeAndUpdateUI(bool mode, const std::shared_ptr<DocumentListController>& list)
{
    editMode = mode;
    if (list)
        list->setEditing(mode, Animated::Yes);
    configureVisibleControllerForMode();
    if (editMode && list)
        barButtonNewFolder->setEnabled(MenuEnableChecks::canEnableNewFolderForSelectedItems(*list));
}

void NavController::configureVisibleControllerForMode()
{
    const auto list = getTopDocumentListController();
    if (!list)
        return;
    configureNavBar(*list);
    configureToolbar(*list);
    updateStatusUI(list);
}

void NavController::configureNavBar(DocumentListController& list)
{
    const auto& text = platform::installed().text;
    auto& bar = list.navigationItem;
    bar.setRightItems({editMode
                           ? BarButtonItem::system(BarButtonItem::System::Cancel, action(&NavController::endEditMode))
                           : BarButtonItem::titled(text.localized("Select"), action(&NavController::beginEditMode))});
    bar.setHidesBackButton(editMode);
    bar.setTitle(editMode ? text.localized("Select Items") : viewTitle);
}

void NavController::configureToolbar(DocumentListController& list)
{
    barButtonNewFolder = nullptr;
    barButtonMoveItem = nullptr;
    barButtonDeleteItem = nullptr;
    if (editMode) {
        barButtonNewFolder = toolbarButton("New Folder", action(&NavController::promtForNewFolderAndCreate));
        barButtonMoveItem = toolbarButton("Move", action(&NavController::showMoveTargetForSelectedItems));
        barButtonDeleteItem = toolbarButton("Delete", action(&NavController::showWarningAndDeleteDocument));
        barButtonMoveItem->setEnabled(MenuEnableChecks::canShowMoveForSelectedItems(list));
        barButtonDeleteItem->setEnabled(MenuEnableChecks::canShowDeleteForSelectedItems(list));
        const auto space = BarButtonItem::flexibleSpace();
        list.setToolbarItems({barButtonNewFolder, space, barButtonMoveItem, space, barButtonDeleteItem});
        return;
    }
    if (!statusBar(list))
        createStatusBar(list, upgradeOffer, std::static_pointer_cast<NavController>(shared_from_this()));
    displayStatusBar(list);
    updateStatusUI(std::static_pointer_cast<DocumentListController>(list.shared_from_this()));
}

void NavController::updateStatusUI(std::shared_ptr<DocumentListController> list)
{
    if (!pickerIsAlive)
        return;
    if (!list)
        list = getTopDocumentListController();
    if (!list)
        return;
    if (const auto status = statusBar(*list)) {
        status->setStatusText(toolbarStatusText(list->containedItemCount()));
        status->showUpgradeOffer(upgradeOffer);
    }
    if (!editMode)
        return;
    const auto selected = static_cast<std::int64_t>(list->selectedItems().count);
    const auto& text = platform::installed().text;
    list->navigationItem.setTitle(selected > 0 ? text.localizedCount(".DICT.ITEMS_SELECTED.%d", selected)
                                               : text.localized("Select Items"));
    if (barButtonMoveItem)
        barButtonMoveItem->setEnabled(MenuEnableChecks::canShowMoveForSelectedItems(*list));
    if (barButtonDeleteItem)
        barButtonDeleteItem->setEnabled(MenuEnableChecks::canShowDeleteForSelectedItems(*list));
}

void NavController::documentListControllerSelectAllItems(DocumentListController& list)
{
    if (getTopDocumentListController().get() == &list)
        selectAllItems();
}

bool NavController::okToShowQuota() const
{
    return lastQuotaFetch.has_value();
}

std::string NavController::toolbarStatusText(std::uint64_t itemCount) const
{
    auto items = platform::installed().text.localizedCount(".DICT.ITEMS.%d", static_cast<std::int64_t>(itemCount));
    return okToShowQuota() ? localizedFilledText("%1$@, %2$@", {items, quotaAvailableString()}) : items;
}

std::string NavController::quotaAvailableString() const
{
    const auto& text = platform::installed().text;
    const auto shown = text.byteCount(quotaBytes, ByteCountStyle::Binary);
    const auto number = leadingNumber(text.byteCountNumber(quotaBytes, ByteCountStyle::Binary));
    return text.localizedAmount(".DICT.AVAILABLE.%g", number, shown);
}

void NavController::documentListControllerItemsChanged(DocumentListController& list)
{
    TSD_FUNCTION("-[NavController documentListControllerItemsChanged:]");
    pickerIsAlive = true;
    const auto top = getTopDocumentListController();
    if (top.get() != &list)
        return;
    selectAgain(list);
    if (editMode) {
        TSD_DEBUG("DLC selected item count is %{public}@", list.selectedItems().count);
    } else if (const auto count = list.containedItemCount(); count != lastLoggedCount) {
        lastLoggedCount = count;
        TSD_DEBUG("DLC items changed, count is %{public}@", count);
    }
    updateStatusUI(top);
}

} // namespace tessel
