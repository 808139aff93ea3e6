#pragma once

#include "platform/base/Date.h"
#include "platform/base/NotificationCenter.h"
#include "platform/base/URL.h"
#include "platform/cloud/ActivityService.h"
#include "platform/documents/DocumentInteractionController.h"
#include "platform/documents/DocumentListController.h"
#include "platform/documents/DocumentTargetSelectionController.h"
#include "platform/files/FilePresenter.h"
#include "platform/run/OperationQueue.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace tessel {

class BarButtonItem;
class DRItem;
class FilenamePrompt;
class GlanciaItemController;
class PreviewDetailsViewController;

/// Owns the showing of one document: chooses the view, puts it on the browser's stack, follows the file wherever it
/// goes, and offers the document to the user's other devices. The main thread's, but for what it is told as a
/// presenter.
class PreviewItemManager final : public FilePresenter,
                                 public DocumentTargetSelectionControllerDelegate,
                                 public std::enable_shared_from_this<PreviewItemManager> {
public:
    static constexpr std::int32_t kQuickPreview = 0;
    static constexpr std::int32_t kDetails = 1;

    PreviewItemManager();
    ~PreviewItemManager() override;
    PreviewItemManager(const PreviewItemManager&) = delete;
    PreviewItemManager& operator=(const PreviewItemManager&) = delete;

    [[nodiscard]] static std::shared_ptr<PreviewItemManager> newItemManagerWithMode(
        std::int32_t mode, const std::shared_ptr<NavigationController>&);

    std::int32_t mode = kQuickPreview;
    std::weak_ptr<NavigationController> navigationController;            ///< the browser's
    std::optional<Date> modifiedDate;                                    ///< of the content that is shown
    std::shared_ptr<PreviewDetailsViewController> detailsViewController; ///< while it is shown; null in a quick preview
    /// Of the preview's Share button; kept while the sheet is shown.
    std::shared_ptr<DocumentInteractionController> documentInteractionController;

    [[nodiscard]] const std::shared_ptr<DRItem>& item() const { return item_; }
    /// Shows another item, or the same one anew.
    void setItem(const std::shared_ptr<DRItem>& item) { setItem(item, true); }
    void previewItem(const std::shared_ptr<DRItem>& item) { setItem(item, true); }
    /// @param updatePreview false only keeps it
    void setItem(const std::shared_ptr<DRItem>&, bool updatePreview);
    /// Makes ready to show the item, and begins to follow it. @returns what shows it; null for an item without a URL
    [[nodiscard]] std::shared_ptr<ViewController> prepareToPreviewItem(const std::shared_ptr<DRItem>&);
    [[nodiscard]] static std::shared_ptr<GlanciaItemController> currentGlanciaController();
    /// Puts the preview on the browser's stack, in the place of one that is on top.
    void replaceLastViewController(const std::shared_ptr<ViewController>&);
    [[nodiscard]] static bool isPreviewControllerDisplayed(const std::shared_ptr<ViewController>&);

    /// Told by the preview's controllers.
    void viewControllerWillDisappear(const ViewController&);

    /// Deletes the item after the user has agreed, and tells what went wrong.
    /// @param barButton where the question points
    void showWarningAndDeleteDocument(const std::shared_ptr<ViewController>&,
                                      const std::shared_ptr<BarButtonItem>& barButton);

    /// Has the user choose the folder that the item is moved to. Nothing for an item without a URL.
    void showMoveTarget(const std::shared_ptr<ViewController>&);

    void documentTargetSelectionControllerDidSelectItemAtURL(DocumentTargetSelectionController&, const URL&) override;
    void documentTargetSelectionControllerWantsNewFolder(DocumentTargetSelectionController&, const URL& folder,
                                                         const std::function<void(const URL&)>& made) override;

    /// The folder lists from the drive's top folder down to a folder, or to the folder that holds a document.
    /// @returns none, logged, when nothing is there or it lies outside the drive.
    [[nodiscard]] static std::optional<DocumentListController::Hierarchy> dlcStackForURL(const URL&);
    /// Replaces the browser's stack by the lists that lead to the URL, and by the document's preview when it is one.
    /// @returns whether it did
    bool warpToNewURL(const URL&);

    /// Registering twice only publishes the activity again. Safe from any thread, like the other one.
    void registerAsFilePresenter();
    void unregisterAsFilePresenter();
    void registerRelayaActivity();
    void registerRelayaActivityForBookmark(const std::string&);
    void unregisterRelayaActivity();
    /// What is offered to the user's other devices; null for nothing.
    [[nodiscard]] std::shared_ptr<const ContinuationActivity> relayaActivity() const;

    [[nodiscard]] std::optional<URL> presentedItemURL() const override;
    [[nodiscard]] OperationQueue& presentedItemOperationQueue() override { return fcQueue_; }
    void presentedItemDidChange() override;
    void presentedItemDidMoveToURL(const URL&) override;
    void accommodatePresentedItemDeletionWithCompletionHandler(const Completion&) override;
    void accommodatePresentedSubitemDeletionAtURL(const URL&, const Completion&) override;

private:
    [[nodiscard]] std::shared_ptr<ViewController> createDetailsViewController();
    [[nodiscard]] std::shared_ptr<ViewController> createGlanciaController();
    void keep(const std::shared_ptr<DRItem>&);
    [[nodiscard]] std::optional<URL> itemURL() const;
    [[nodiscard]] bool isRegistered() const;
    void setRegistered(bool);
    /// Whether it is this manager's preview, and not another one's.
    [[nodiscard]] bool shows(const std::shared_ptr<ViewController>&) const;
    [[nodiscard]] bool isOnTop() const;

    void catchUp();
    void lookOnceMore(const URL&);
    void refreshAfterChange();
    void showDeletionError(const Error&, const std::shared_ptr<ViewController>&);
    void refreshItem(const URL&);
    void refreshViews(bool isNewer, bool isElsewhere);
    void itemMoved(const URL&);
    void afterSubitemDeletion();
    void leavePreview();

    void didBecomeActiveNotification();
    void willResignActiveNotification();

    std::shared_ptr<DRItem> item_;
    std::shared_ptr<FilenamePrompt> folderPrompt_; ///< the last one
    bool hasResigned_ = false;                     ///< the program has, and was not active since
    std::atomic<bool> isLeaving_ = false;          ///< the item was said to be deleted, and is still shown
    bool deletionFailed_ = false;                  ///< of the item, for which the preview is about to be left
    mutable std::mutex mutex_;                     ///< of all that follows up to the queue
    std::optional<URL> itemURL_;                   ///< of `item_`
    bool filePresenterRegistered_ = false;
    bool refreshPending_ = false;
    std::shared_ptr<const ContinuationActivity> relayaActivity_;
    std::mutex registrationMutex_; ///< of what follows; only tried, never waited for
    bool isPresenter_ = false;     ///< known to the coordinator
    NotificationCenter::Observation becomeActive_;
    NotificationCenter::Observation resignActive_;
    OperationQueue fcQueue_; ///< first to end: its operations use all else
};

} // namespace tessel
