#pragma once

#include "platform/base/URL.h"
#include "platform/documents/DocumentInteractionController.h"
#include "platform/documents/DocumentListController.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace tessel {

class BarButtonItem;
class DRItem;
class PreviewBaseViewController;

/// Owns the showing of one document. Main thread only.
class PreviewItemManager : public std::enable_shared_from_this<PreviewItemManager> {
public:
    std::int32_t mode = 0; ///< 0 for the quick preview, 1 for the details
    std::shared_ptr<DRItem> item;
    std::shared_ptr<PreviewBaseViewController> detailsViewController; ///< while it is shown; null in a quick preview
    /// Of the preview's Share button; kept while the sheet is shown.
    std::shared_ptr<DocumentInteractionController> documentInteractionController;

    /// Told by the preview's controllers.
    void viewControllerWillDisappear(const ViewController&);

    /// Deletes the item after the user has agreed, and tells what went wrong.
    /// @param barButton where the question points
    void showWarningAndDeleteDocument(const std::shared_ptr<ViewController>&,
                                      const std::shared_ptr<BarButtonItem>& barButton);

    /// The preview's Move action.
    void showMoveTarget(const std::shared_ptr<ViewController>&);

    /// The folder lists from the drive's top folder down to a folder, or to the folder that holds a document.
    /// @returns none, logged, when nothing is there or it lies outside the drive.
    [[nodiscard]] static std::optional<DocumentListController::Hierarchy> dlcStackForURL(const URL&);
};

} // namespace tessel
