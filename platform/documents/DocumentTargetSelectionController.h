#pragma once

#include "platform/documents/DocumentListController.h"
#include "platform/documents/MoveDestinations.h"
#include "platform/ui/NavigationController.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tessel {

class DocumentTargetSelectionController;

/// Told by a picker what the user chose.
class DocumentTargetSelectionControllerDelegate {
public:
    virtual ~DocumentTargetSelectionControllerDelegate() = default;

    /// The folder was chosen; the picker stays until it is ended.
    virtual void documentTargetSelectionControllerDidSelectItemAtURL(DocumentTargetSelectionController&,
                                                                     const URL& folder) = 0;
    /// The user wants a new folder in this one. @param made to be told of it
    virtual void documentTargetSelectionControllerWantsNewFolder(DocumentTargetSelectionController&, const URL& folder,
                                                                 const std::function<void(const URL&)>& made) = 0;
};

/// Has the user choose the folder that items are to be moved to: a stack of lists that show only folders, at first down
/// to the one that holds the items. Presented over the current context. Main thread only.
class DocumentTargetSelectionController final : public NavigationController, private DocumentListControllerDelegate {
public:
    enum class Kind {
        WithinContainer,
        AcrossContainers, ///< the drive and the libraries that the items can get into
    };

    /// @param itemsToMove all in one folder of the drive. Null without one.
    [[nodiscard]] static std::shared_ptr<DocumentTargetSelectionController> create(std::vector<URL> itemsToMove, Kind);

    /// Use `create`.
    DocumentTargetSelectionController(std::vector<URL> itemsToMove, Kind);

    [[nodiscard]] std::string className() const override { return "DocumentTargetSelectionController"; }

    std::weak_ptr<DocumentTargetSelectionControllerDelegate> targetDelegate;
    [[nodiscard]] const std::vector<URL>& itemsToMove() const { return destinations_->items(); }

    /// Goes on to a folder in the one that is shown.
    void showFolder(const URL&);
    /// Leaves the screen.
    void end();

private:
    [[nodiscard]] std::shared_ptr<DocumentTargetSelectionController> shared();
    [[nodiscard]] bool goToItems();
    [[nodiscard]] std::shared_ptr<DocumentListController> listOf(const URL& folder);
    [[nodiscard]] BarButtonItems toolbarOf(const URL& folder);
    [[nodiscard]] std::shared_ptr<BarButtonItem> button(const char* title, bool enabled,
                                                        void (DocumentTargetSelectionController::*action)(const URL&),
                                                        const URL& folder);
    void choose(const URL& folder);
    void makeFolder(const URL& folder);

    void documentListControllerDidSelectContainerWithViewController(
        DocumentListController&, const std::shared_ptr<DocumentListController>& newList) override;
    void documentListControllerDidSelectItemAtURL(DocumentListController&, const URL&) override {}
    void documentListControllerItemsChanged(DocumentListController&) override {}
    void documentListControllerURLWasRemoved(DocumentListController&) override { popViewController(Animated::Yes); }

    std::shared_ptr<const MoveDestinations> destinations_;
    Kind kind_;
};

} // namespace tessel
