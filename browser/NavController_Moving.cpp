#include "app/common/Log.h"
#include "app/common/TSDAdditions.h"
#include "browser/ItemWork.h"
#include "browser/MenuEnableChecks.h"
#include "browser/NavController.h"
#include "files/FileUtils.h"
#include "files/NewFolderPrompt.h"
#include "files/UIUtils.h"
#include "platform/text/GeneralError.h"
#include "platform/text/TextServices.h"

namespace tessel {

namespace {

std::string counted(std::string_view key, std::size_t count)
{
    return platform::installed().text.localizedCount(key, static_cast<std::int64_t>(count));
}

/// Makes the folder. @returns why there is none, for people
std::optional<std::string> makeFolder(const URL& folder)
{
    TSD_FUNCTION("-[NavController showNewFolderPromptDuringMove:itemsToMove:]_block_invoke");
    if (FileUtils::exists(folder)) {
        TSD_INFO("Item exists at path: %@", folder);
        return UIUtils::bestMessage(generalError(ErrorCode::kFileExists));
    }
    const auto error = FileUtils::mkdir(folder);
    return error ? std::optional(UIUtils::bestMessage(error)) : std::nullopt;
}

void logMove(const std::vector<URL>& items, const URL& target)
{
    TSD_FUNCTION("-[NavController moveItemsToDirectory:toDirectory:]");
    TSD_DEBUG("MoveTarget = %@", target);
    TSD_DEBUG("ItemsToMove = %@", items);
}

void moveItem(const URL& item, const URL& toDirectory, std::vector<Error>& errors)
{
    if (auto error = FileUtils::move(item, toDirectory.appending(item.lastPathComponent())))
        errors.push_back(std::move(*error));
}

void showErrors(const std::vector<Error>& errors, const std::shared_ptr<ViewController>& parent)
{
    if (errors.size() == 1)
        UIUtils::showFriendlyMoveError(errors.front(), parent);
    else if (!errors.empty())
        UIUtils::showAlert(counted(".DICT.CANNOT_MOVE_ITEMS.%d", errors.size()), "", parent);
}

/// What the prompt says of items that could not be moved; none when all were.
std::optional<std::string> messageFor(const std::vector<Error>& errors)
{
    if (errors.empty())
        return std::nullopt;
    return errors.size() == 1 ? UIUtils::bestMessage(errors.front())
                              : counted(".DICT.CANNOT_MOVE_ITEMS.%d", errors.size());
}

} // namespace

void NavController::promtForNewFolderAndCreate()
{
    TSD_FUNCTION("-[NavController promtForNewFolderAndCreate:]");
    TSD_USER_ACTION("Pressed NewFolder");
    TSD_INFO("Pressed NewFolder");
    if (const auto list = getTopDocumentListController())
        showNewFolderPromptDuringMove(list->presentedURL(), {});
}

void NavController::showNewFolderPromptDuringMove(const std::optional<URL>& folder, const std::vector<URL>& itemsToMove)
{
    TSD_FUNCTION("-[NavController showNewFolderPromptDuringMove:itemsToMove:]");
    TSD_USER_ACTION("Show New Folder Prompt (nav, during move)");
    if (!folder) {
        TSD_WARNING("dlc.presentedURL is nil");
        return;
    }
    const auto& text = platform::installed().text;
    const auto title =
        itemsToMove.empty() ? text.localized("New Folder") : counted(".DICT.MOVE_ITEMS.%d", itemsToMove.size());
    folderPromptAlert = NewFolderPrompt::newWithTitle(
        title, text.localized(itemsToMove.empty() ? "Create" : "Move"),
        [weak = weak_from_this(), folder = *folder, itemsToMove](const std::string& name, bool& done) {
            TSD_FUNCTION("-[NavController showNewFolderPromptDuringMove:itemsToMove:]_block_invoke");
            done = false;
            if (name.empty())
                return FilenamePrompt::Text();
            TSD_USER_ACTION("New Folder name entry Confirmed");
            TSD_INFO("New folder entered: %@", name);
            const auto newFolder = folder.appending(name);
            if (auto refusal = makeFolder(newFolder))
                return FilenamePrompt::Text(std::move(refusal));
            const bool hasItems = !itemsToMove.empty() && !weak.expired();
            auto message = hasItems ? messageFor(moveItemsToDirectory(itemsToMove, newFolder)) : std::nullopt;
            done = !message;
            return message;
        });
    visibleViewController()->present(folderPromptAlert->alert, Animated::Yes);
}

void NavController::showMoveTargetForSelectedItems()
{
    TSD_FUNCTION("-[NavController showMoveTargetForSelectedItems:]");
    TSD_USER_ACTION("Pressed Move");
    TSD_INFO("Pressed Move");
    const auto list = getTopDocumentListController();
    if (!list)
        return;
    const auto selected = list->selectedItemURLs();
    setEditModeAndUpdateUI(false, list);
    showMoveTargetForItems(selected, list->presentedURL());
}

void NavController::showMoveTargetForItems(const std::vector<URL>& items, const URL& inFolder)
{
    TSD_FUNCTION("-[NavController showMoveTargetForItems:inFolder:]");
    if (MenuEnableChecks::isDesktopOrDocumentsInURLArray(items)) {
        TSD_WARNING("Not moving items with special folder: %@", items);
        UIUtils::showUnsupportedError(visibleViewController());
        return;
    }
    if (MenuEnableChecks::numContainersInURLArray(items) > 0) {
        TSD_WARNING("Not moving items with app library: %@", items);
        UIUtils::showUnsupportedError(visibleViewController());
        return;
    }
    TSD_INFO("Prompting for Move Target, %d items", items.size());
    const bool canLeaveContainer = tsd_canCrossZoneMoveURLs(items);
    if (!canLeaveContainer && !MenuEnableChecks::containerHasSubfolders(inFolder)) {
        showNewFolderPromptDuringMove(inFolder, items);
        return;
    }
    using Picker = DocumentTargetSelectionController;
    const auto picker =
        Picker::create(items, canLeaveContainer ? Picker::Kind::AcrossContainers : Picker::Kind::WithinContainer);
    if (!picker) {
        TSD_WARNING("No folder of the items can be shown: %@", items);
        UIUtils::showError(generalError(ErrorCode::kFileDoesNotExist), visibleViewController());
        return;
    }
    picker->targetDelegate = std::static_pointer_cast<NavController>(shared_from_this());
    visibleViewController()->present(picker, Animated::Yes, [] {
        TSD_FUNCTION("-[NavController showMoveTargetForItems:inFolder:]_block_invoke");
        TSD_DEBUG("Presented moveTarget");
    });
}

void NavController::documentTargetSelectionControllerDidSelectItemAtURL(DocumentTargetSelectionController& picker,
                                                                        const URL& target)
{
    TSD_FUNCTION("-[NavController documentTargetSelectionController:didSelectItemAtURL:]");
    TSD_USER_ACTION("Move Target Selected (nav)");
    TSD_INFO("Move Target Selected: %@", target);
    const auto items = picker.itemsToMove();
    picker.end();
    moveItemsToDirectoryAndShowErrors(items, target);
}

void NavController::documentTargetSelectionControllerWantsNewFolder(DocumentTargetSelectionController& picker,
                                                                    const URL& folder,
                                                                    const std::function<void(const URL&)>& made)
{
    folderPromptAlert = NewFolderPrompt::newInFolder(folder, made);
    picker.present(folderPromptAlert->alert, Animated::Yes);
}

bool NavController::documentListControllerCanMoveItems(const DocumentListController&, const std::vector<URL>& items,
                                                       const URL& folder) const
{
    const bool stay =
        MenuEnableChecks::isDesktopOrDocumentsInURLArray(items) || MenuEnableChecks::numContainersInURLArray(items) > 0;
    return !stay && MoveDestinations(items).accepts(folder);
}

void NavController::documentListControllerMoveItems(DocumentListController& list, const std::vector<URL>& items,
                                                    const URL& folder)
{
    TSD_FUNCTION("-[NavController documentListController:moveItems:toDirectory:]");
    TSD_USER_ACTION("DLC Dropped Items");
    if (editMode)
        setEditModeAndUpdateUI(false, std::static_pointer_cast<DocumentListController>(list.shared_from_this()));
    moveItemsToDirectoryAndShowErrors(items, folder);
}

std::vector<Error> NavController::moveItemsToDirectory(const std::vector<URL>& items, const URL& toDirectory)
{
    logMove(items, toDirectory);
    std::vector<Error> errors;
    for (const auto& item : items)
        moveItem(item, toDirectory, errors);
    return errors;
}

void NavController::moveItemsToDirectoryAndShowErrors(const std::vector<URL>& items, const URL& toDirectory)
{
    logMove(items, toDirectory);
    const auto self = std::static_pointer_cast<NavController>(shared_from_this());
    const auto errors = std::make_shared<std::vector<Error>>();
    ItemWork::run(
        {.title = counted(".DICT.MOVING_ITEMS.%d", items.size()),
         .count = items.size(),
         .step = [items, toDirectory, errors](std::size_t index) { moveItem(items[index], toDirectory, *errors); },
         .finished = [self, errors] { showErrors(*errors, self->visibleViewController()); }},
        self);
}

} // namespace tessel
