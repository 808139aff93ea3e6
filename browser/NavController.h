#pragma once

#include "browser/QuotaFetcher.h"
#include "browser/StatusBar.h"
#include "platform/base/Date.h"
#include "platform/base/NotificationCenter.h"
#include "platform/base/Value.h"
#include "platform/documents/DocumentListController.h"
#include "platform/documents/DocumentTargetSelectionController.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/StateCoder.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessel {

class DocumentInteractionController;
class DRItem;
class FilenamePrompt;
class PreviewItemManager;
class UpgradeFlowManager;

/// The root of the window and the spine of the browser: a stack of folder lists from the drive's top folder down to
/// the one on screen, or the unavailable view while no account is signed in. It configures every list before it is
/// shown and answers what the user does in it. Main thread only.
class NavController : public NavigationController,
                      public NavigationControllerDelegate,
                      public DocumentListControllerDelegate,
                      public DocumentTargetSelectionControllerDelegate,
                      public QuotaFetcherDelegate,
                      public DocumentListControllerStatusBarDelegate,
                      public SessionKeeper {
public:
    [[nodiscard]] std::string className() const override { return "NavController"; }

    bool editMode = false;                             ///< items are being selected in the top list
    std::string viewTitle;                             ///< the top list's title outside edit mode
    std::shared_ptr<BarButtonItem> barButtonNewFolder; ///< of the toolbar in edit mode, as the next two; else null
    std::shared_ptr<BarButtonItem> barButtonDeleteItem;
    std::shared_ptr<BarButtonItem> barButtonMoveItem;
    bool pickerIsAlive = false; ///< some list has reported its items since the stack was last built

    std::uint64_t quotaBytes = 0;       ///< free in the account's storage, as it was told last; 0 without a drive
    std::optional<Date> lastQuotaFetch; ///< when that was; none: never
    std::shared_ptr<QuotaFetcher> quotaFetcher;         ///< null without a drive
    std::optional<StorageOffer> upgradeOffer;           ///< the current one
    std::shared_ptr<UpgradeFlowManager> upgradeFlowMgr; ///< of the last press of the offer's button

    /// Of the document that is previewed or peeked at; null while a list is shown.
    std::shared_ptr<PreviewItemManager> itemManager;
    std::shared_ptr<DocumentInteractionController> documentInteractionController; ///< the last share sheet
    std::shared_ptr<FilenamePrompt> folderPromptAlert;  ///< the last prompt for a name; kept until the next one
    std::function<void()> performActionCompletionBlock; ///< of the last action that waits for the user

    /// Rebuilds the stack from nothing: the top folder's list, or the unavailable view.
    void setupInitialViewController();
    /// Whether an account is signed in.
    [[nodiscard]] bool checkTesselState() const;
    /// The list on screen, or null.
    [[nodiscard]] std::shared_ptr<DocumentListController> getTopDocumentListController() const;

    /// Replaces the stack by the lists down to a folder. @returns whether it did.
    bool warpToFolderForURL(const URL&);
    /// Shows a document asked for from outside. What was presented is dismissed in any case.
    /// @param previewMode as the item manager's
    /// @returns whether a preview was started; never for a URL outside the drive or in its trash.
    bool warpToNewURL(const std::optional<URL>&, std::int32_t previewMode);
    /// Shows a document, in the place of one that is shown. Nothing without an item.
    void showPreview(const std::shared_ptr<DRItem>&, std::int32_t previewMode);
    /// Opens what was peeked at: a folder's lists, the document's application, or the preview that the peek has shown.
    void pressaPopToURL(const URL&);
    /// Goes to the top list and, 0.7 seconds later, searches there.
    void startSearch(const std::string& query);

    /// Has items of the top list be selected, instead of opened.
    void beginEditMode();
    void endEditMode();
    /// Selects all items of the top list.
    void selectAllItems();
    /// @param list whose items are to be selected, or no longer
    void setEditModeAndUpdateUI(bool, const std::shared_ptr<DocumentListController>& list);
    /// Shows what has changed of the items, the selection and the room that is left.
    /// @param list null: the top one
    void updateStatusUI(std::shared_ptr<DocumentListController> list);

    /// Asks for the name of a folder in the top list's folder, and makes it.
    void promtForNewFolderAndCreate();
    /// Asks for the name of a folder, until it can be made or the user gives up, and moves the items into it.
    /// @param itemsToMove none: only makes the folder. What could not be moved keeps the prompt open.
    void showNewFolderPromptDuringMove(const std::optional<URL>& folder, const std::vector<URL>& itemsToMove);

    /// Has the user choose a folder for the top list's selected items, and ends the edit mode.
    void showMoveTargetForSelectedItems();
    /// Has the user choose the folder that the items are moved to, or name a new one where there is none to choose. The
    /// Desktop and Documents folders, and app libraries, are refused.
    /// @param inFolder holds the items
    void showMoveTargetForItems(const std::vector<URL>& items, const URL& inFolder);
    /// Moves the items one after the other, whatever becomes of the ones before.
    /// @returns why items stayed, in their order
    [[nodiscard]] static std::vector<Error> moveItemsToDirectory(const std::vector<URL>& items, const URL& toDirectory);
    /// The same, leaving the window alive, which shows how it goes on when it takes long. Tells why items stayed.
    void moveItemsToDirectoryAndShowErrors(const std::vector<URL>& items, const URL& toDirectory);

    /// Deletes the top list's selected items after the user has agreed.
    void showWarningAndDeleteDocument();
    /// Deletes items after the user has agreed, each for itself, and tells what could not be deleted. Of app libraries
    /// everything is deleted; they are refused together with other items. The Desktop and Documents folders are
    /// refused.
    /// @param usingView where the question points; null: at the Delete button
    /// @param list whose edit mode ends when the user agrees; may be null
    /// @param finishedCompletion called once nothing more happens to the items, before failures are told; may be empty
    void showWarningAndDeleteURLs(const std::vector<URL>&, const std::shared_ptr<View>& usingView,
                                  const std::shared_ptr<DocumentListController>& list,
                                  const std::function<void()>& finishedCompletion);
    /// Asks for the item's new name, until it can have the one that is given or the user gives up. The Desktop and
    /// Documents folders, app libraries, and what somebody else shares are refused.
    void showRenamePrompt(const URL&);
    /// Shows what else can be done with an item; with a reference's document in the reference's place.
    /// @param originatingView where the sheet points; may be null
    void showDIC(const std::shared_ptr<View>& originatingView, const std::optional<URL>&,
                 const std::function<void()>& completion);

    /// Logs where the drive's container lies.
    void logContainerURL() const;

    void navigationControllerDidShowViewController(NavigationController&, const std::shared_ptr<ViewController>& shown,
                                                   Animated) override;
    void documentListControllerDidSelectContainerWithViewController(
        DocumentListController&, const std::shared_ptr<DocumentListController>& newList) override;
    void documentListControllerDidSelectItemAtURL(DocumentListController&, const URL&) override;
    void documentListControllerItemsChanged(DocumentListController&) override;
    void documentListControllerSelectAllItems(DocumentListController&) override;
    void documentListControllerURLWasRemoved(DocumentListController&) override;
    void documentListControllerPerformAction(DocumentListController&, int action, const URL&,
                                             const std::shared_ptr<View>& originatingView,
                                             const std::function<void()>& completion) override;
    [[nodiscard]] bool documentListControllerCanPerformAction(const DocumentListController&, ListAction) const override;
    [[nodiscard]] std::shared_ptr<ViewController> documentListControllerViewControllerForPreviewingItemAtURL(
        DocumentListController&, const URL&) override;
    /// By the rules of showMoveTargetForItems, and of how deep folders may lie.
    [[nodiscard]] bool documentListControllerCanMoveItems(const DocumentListController&, const std::vector<URL>&,
                                                          const URL& folder) const override;
    void documentListControllerMoveItems(DocumentListController&, const std::vector<URL>&, const URL& folder) override;
    void documentListControllerPeekWasReleased(DocumentListController&) override;
    [[nodiscard]] std::optional<Color> documentListControllerColorOfTag(const DocumentListController&,
                                                                        const std::string& tag) const override;

    void documentTargetSelectionControllerDidSelectItemAtURL(DocumentTargetSelectionController&, const URL&) override;
    void documentTargetSelectionControllerWantsNewFolder(DocumentTargetSelectionController&, const URL& folder,
                                                         const std::function<void(const URL&)>& made) override;

    void quotaFetcherDidUpdateValue(QuotaFetcher&, std::uint64_t freeBytes) override;
    void quotaFetcherFoundNoLimit(QuotaFetcher&) override;
    /// Leads the user through the current offer.
    void upgradeStorageButtonPressed() override;

    void encodeRestorableState(StateCoder&) const override;
    void decodeRestorableState(const StateCoder&) override;
    void encodeSession(StateCoder&) const override;
    void decodeSession(const StateCoder&) override;

protected:
    void viewDidLoad() override;

private:
    void showDrive();
    void showUnavailable();
    void tellUnavailable();
    void startQuotaFetcher();
    void followOffers();
    void offerChangedNotification();
    void initNewListController(DocumentListController&);

    void didBecomeActiveNotification();
    void tesselAccountAvailabilityChanged();
    void handleAccountChanges();
    void saveTesselToken(const std::optional<Data>&);

    [[nodiscard]] std::function<void()> action(void (NavController::*operation)());
    void configureVisibleControllerForMode();
    void configureNavBar(DocumentListController&);
    void configureToolbar(DocumentListController&);
    [[nodiscard]] bool okToShowQuota() const;
    [[nodiscard]] std::string toolbarStatusText(std::uint64_t itemCount) const;
    [[nodiscard]] std::string quotaAvailableString() const;

    void openFolderLink(const URL&);
    void showPreviewSoon(const std::shared_ptr<DRItem>&, std::int32_t previewMode);
    [[nodiscard]] static std::int32_t previewModeFor(const DRItem&);
    [[nodiscard]] std::shared_ptr<PreviewItemManager> newItemManager(std::int32_t previewMode);
    void useNewItemManager(std::int32_t previewMode);
    void dropItemManager();
    void selectAgain(DocumentListController&);
    void comeBackToPlace();
    void deleteWasAnswered(const std::vector<URL>&, bool cancelled, const std::shared_ptr<DocumentListController>&,
                           const std::function<void()>& finished);

    /// Where the user was in a document.
    struct Place {
        URL document;
        double place = 0;
    };

    std::vector<URL> selectionToComeBack_;   ///< of the last session, until the list is complete
    std::optional<Place> placeToComeBackTo_; ///< of the last session, until the document is shown
    NotificationCenter::Observation becomeActive_;
    NotificationCenter::Observation identityChanged_;
    NotificationCenter::Observation offerChanged_;
};

} // namespace tessel
