#include "app/common/Log.h"
#include "files/DRItem.h"
#include "files/UIUtils.h"
#include "platform/text/FilledText.h"
#include "platform/text/TextServices.h"

namespace tessel {

namespace {

std::string localized(std::string_view key)
{
    return platform::installed().text.localized(key);
}

std::string shown(std::string_view name)
{
    return platform::installed().text.displayName(name);
}

/// The title that says that a name is taken, with or without its extension.
std::string takenTitle(const std::string& name)
{
    const auto extension = std::string(URL::file(name).pathExtension());
    if (extension.empty())
        return localizedFilledText("The name “%@” is already taken.", {shown(name)});
    const auto bare = name.substr(0, name.size() - extension.size() - 1);
    return localizedFilledText("The name “%1$@” with extension “.%2$@” is already taken.",
                               {shown(bare), shown(extension)});
}

/// Where the sheet points: a line across the middle of the view, else the button.
PopoverAnchor anchorAt(const std::shared_ptr<View>& view, const std::shared_ptr<BarButtonItem>& button)
{
    PopoverAnchor anchor;
    if (!view) {
        anchor.barButtonItem = button;
        return anchor;
    }
    const auto bounds = view->bounds();
    anchor.sourceView = view;
    anchor.sourceRect = {bounds.x, bounds.y + bounds.height / 2, bounds.width, 0};
    anchor.onlyLeftOrRight = true;
    return anchor;
}

std::shared_ptr<AlertAction> deleteAction(const UIUtils::DeleteCompletion& completion)
{
    return std::make_shared<AlertAction>(localized("Delete from Tessel Drive"), AlertAction::Style::Destructive,
                                         [completion](const std::shared_ptr<AlertAction>& action) {
                                             TSD_FUNCTION("+[UIUtils showDeleteWarningAlert:hasContainer:"
                                                          "viewController:usingView:usingButton:completion:]"
                                                          "_block_invoke");
                                             TSD_DEBUG("Delete action");
                                             completion(action, false);
                                         });
}

std::shared_ptr<AlertAction> cancelAction(const UIUtils::DeleteCompletion& completion)
{
    return std::make_shared<AlertAction>(localized("Cancel"), AlertAction::Style::Cancel,
                                         [completion](const std::shared_ptr<AlertAction>& action) {
                                             TSD_FUNCTION("+[UIUtils showDeleteWarningAlert:hasContainer:"
                                                          "viewController:usingView:usingButton:completion:]"
                                                          "_block_invoke");
                                             TSD_INFO("Delete: Cancel pressed");
                                             completion(action, true);
                                         });
}

} // namespace

void UIUtils::showFriendlyMoveError(const Error& error, const Presenter& parentViewController)
{
    const auto path = error.userInformation.find(ErrorKey::kDestinationFilePath);
    const auto destination = URL::file(path == error.userInformation.end() ? "" : path->second);
    showFriendlyMoveOrRenameError(error, std::string(destination.lastPathComponent()), true, parentViewController);
}

void UIUtils::showFriendlyRenameError(const Error& error, const std::string& basename,
                                      const Presenter& parentViewController)
{
    showFriendlyMoveOrRenameError(error, basename, false, parentViewController);
}

void UIUtils::showFriendlyMoveOrRenameError(const Error& error, const std::string& basename, bool movingToDir,
                                            const Presenter& parentViewController)
{
    if (error.domain == Domain::General && error.code == ErrorCode::kFileExists)
        showItemExistsAlert(basename, movingToDir, parentViewController);
    else if (error.domain == Domain::General && error.code == ErrorCode::kInvalidFileName)
        showInvalidItemNameAlert(basename, parentViewController);
    else
        showError(error, parentViewController);
}

void UIUtils::showItemExistsAlert(const std::string& name, bool movingToDir, const Presenter& parentViewController)
{
    if (movingToDir)
        showAlert(localizedFilledText("An item named “%@” already exists in the new location.", {shown(name)}), "",
                  parentViewController);
    else
        showAlert(takenTitle(name), localized("Choose a different name."), parentViewController);
}

void UIUtils::showInvalidItemNameAlert(const std::string& name, const Presenter& parentViewController)
{
    showAlert("",
              localizedFilledText("The name “%@” can’t be used. Try using a name with fewer characters, or with no "
                                  "punctuation marks.",
                                  {shown(name)}),
              parentViewController);
}

void UIUtils::showAlert(const std::string& title, const std::string& message, const Presenter& parentViewController)
{
    if (!parentViewController)
        return;
    auto alert = std::make_shared<AlertController>(AlertController::Style::Alert, title, message);
    alert->addAction(std::make_shared<AlertAction>(localized("OK"), AlertAction::Style::Default, nullptr));
    parentViewController->present(std::move(alert), Animated::Yes);
}

void UIUtils::showDeleteWarningAlert(const std::vector<URL>& urls, bool /*hasContainer*/,
                                     const Presenter& viewController, const std::shared_ptr<View>& usingView,
                                     const std::shared_ptr<BarButtonItem>& usingButton,
                                     const DeleteCompletion& completion)
{
    if (urls.empty()) {
        completion(nullptr, true);
        return;
    }
    const auto message = messageForDeletePrompt(urls);
    if (!message || !viewController)
        return;
    auto sheet = std::make_shared<AlertController>(AlertController::Style::ActionSheet, "", *message);
    sheet->addAction(deleteAction(completion));
    sheet->addAction(cancelAction(completion));
    sheet->popoverAnchor = anchorAt(usingView, usingButton);
    viewController->present(std::move(sheet), Animated::Yes);
}

std::optional<std::string> UIUtils::messageForDeletePrompt(const std::vector<URL>& urls)
{
    if (urls.size() != 1) {
        const auto count = static_cast<std::int64_t>(urls.size());
        return localizedFilledText("%@ will be permanently deleted from Tessel Drive on all your devices. This action "
                                   "cannot be undone.",
                                   {platform::installed().text.localizedCount(".DICT.ITEMS.%d", count)});
    }
    const auto item = DRItem::initWithURL(urls.front());
    if (!item || !item->localizedName() || item->localizedName()->empty())
        return std::nullopt;
    const auto* key = item->isContainer() ? "The %@ app library, and all its documents, will be permanently deleted "
                                            "from Tessel Drive on all your devices. This action cannot be undone."
                                          : "\"%@\" will be permanently deleted from Tessel Drive on all your devices. "
                                            "This action cannot be undone.";
    return localizedFilledText(key, {shown(*item->localizedName())});
}

} // namespace tessel
