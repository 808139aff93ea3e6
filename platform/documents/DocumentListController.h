#pragma once

#include "platform/base/Error.h"
#include "platform/documents/ListAction.h"
#include "platform/documents/ListRow.h"
#include "platform/files/FolderTable.h"
#include "platform/ui/ViewController.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessel {

class DocumentListController;
class NavigationController;
class SearchController;
struct CloudContainer;
struct LibraryRow;

/// Told by a list what the user did in it and what became of its folder.
class DocumentListControllerDelegate {
public:
    virtual ~DocumentListControllerDelegate() = default;

    /// A folder was pressed; `newList` shows it and is not on any stack yet.
    virtual void documentListControllerDidSelectContainerWithViewController(
        DocumentListController&, const std::shared_ptr<DocumentListController>& newList) = 0;
    /// A document, package or link was pressed.
    virtual void documentListControllerDidSelectItemAtURL(DocumentListController&, const URL&) = 0;
    /// The user wants all items selected.
    virtual void documentListControllerSelectAllItems(DocumentListController&) {}
    /// The items, or which of them are selected, have changed.
    virtual void documentListControllerItemsChanged(DocumentListController&) = 0;
    /// An action was asked for, from a row's menu or gesture.
    /// @param action a ListAction's code
    /// @param originatingView where it was asked for; null: not known
    /// @param completion called when the row may close its gesture; empty: nobody waits
    virtual void documentListControllerPerformAction(DocumentListController&, int /*action*/, const URL&,
                                                     const std::shared_ptr<View>& /*originatingView*/,
                                                     const std::function<void()>& /*completion*/)
    {
    }
    /// Whether that would do anything. Actions that would not are not shown.
    [[nodiscard]] virtual bool documentListControllerCanPerformAction(const DocumentListController&, ListAction) const
    {
        return false;
    }
    /// Whether items, from anywhere, may be moved into a folder that the list shows, or into the list's own.
    [[nodiscard]] virtual bool documentListControllerCanMoveItems(const DocumentListController&,
                                                                  const std::vector<URL>& /*items*/,
                                                                  const URL& /*folder*/) const
    {
        return false;
    }
    /// Such items were dropped there.
    virtual void documentListControllerMoveItems(DocumentListController&, const std::vector<URL>& /*items*/,
                                                 const URL& /*folder*/)
    {
    }
    /// What a peek at one of the items shows; null for none.
    [[nodiscard]] virtual std::shared_ptr<ViewController> documentListControllerViewControllerForPreviewingItemAtURL(
        DocumentListController&, const URL&)
    {
        return nullptr;
    }
    /// A peek has ended, and nothing came of it.
    virtual void documentListControllerPeekWasReleased(DocumentListController&) {}
    /// The colour in which a tag is shown; asked again when the key-value store has changed.
    [[nodiscard]] virtual std::optional<Color> documentListControllerColorOfTag(const DocumentListController&,
                                                                                const std::string& /*tag*/) const
    {
        return std::nullopt;
    }
    /// The presented folder was removed or moved away. Told once, when the list is the top one of its stack.
    virtual void documentListControllerURLWasRemoved(DocumentListController&) = 0;
};

enum class ListState {
    Loading, ///< the listing is not complete; rows may already be there
    Complete,
    Failed, ///< there is no listing; `failure` says why
};

/// A measurement of how a list scrolls.
struct ScrollTest {
    std::string name;
    int iterations = 0;
    int delta = 0; ///< points for each frame
    ListMode mode = ListMode::Rows;
};

/// A list of one folder's items, in natural order, kept true while other programs change the folder. Hidden items are
/// not shown; in the drive's top folder the app libraries are. Main thread only; listing happens elsewhere.
///
/// The folder is read from when the list is first looked at: when its view is loaded, its items or rows are asked for
/// or seen. So of the lists that a jump to a deep folder makes only the one on screen reads its folder.
class DocumentListController : public ViewController {
public:
    using Hierarchy = std::vector<std::shared_ptr<DocumentListController>>;

    /// The list of the drive's top folder, or null when there is no drive.
    [[nodiscard]] static std::shared_ptr<DocumentListController> create();
    [[nodiscard]] static std::shared_ptr<DocumentListController> create(const URL& folder);

    /// The lists from the drive's top folder down to `folder`; none for a URL that is no folder of the drive.
    [[nodiscard]] static std::optional<Hierarchy> listControllerHierarchyForURL(const URL& folder);

    ~DocumentListController() override;

    [[nodiscard]] std::string className() const override { return "DocumentListController"; }
    [[nodiscard]] std::string description() const override;

    [[nodiscard]] const URL& presentedURL() const { return presentedURL_; }

    std::weak_ptr<DocumentListControllerDelegate> delegate;
    std::uint32_t offeredActions = 0; ///< bit n offers list action code n
    /// What others keep with the list for as long as it lives, by the address of a constant of theirs.
    std::map<const void*, std::shared_ptr<void>> associatedObjects;

    [[nodiscard]] std::size_t containedItemCount() const;
    /// Made anew by each call.
    [[nodiscard]] std::vector<URL> containedItemURLs() const;

    /// Costs a look at each row, and none at the file system.
    [[nodiscard]] SelectedItems selectedItems() const;
    [[nodiscard]] bool isSelected(const URL&) const;
    /// In list order.
    [[nodiscard]] std::vector<URL> selectedItemURLs() const;
    /// URLs that are not in the list are ignored.
    void setSelectedItemURLs(const std::vector<URL>&);
    [[nodiscard]] bool editing() const { return editing_; }
    /// Leaving editing clears the selection.
    void setEditing(bool, Animated);

    /// The actions that can be asked for now, in the order of a menu.
    [[nodiscard]] std::vector<ListAction> actions() const;
    /// Asks the delegate for an action on one of the items.
    void performAction(ListAction, const URL&, const std::shared_ptr<View>& originatingView,
                       const std::function<void()>& completion);

    /// The items that are dragged with a row: all that are selected, if it is one of them. Libraries stay.
    [[nodiscard]] std::vector<URL> itemsDraggedWith(std::size_t row) const;
    /// Where items are to go that are dropped on a row, or beside all rows; none where they cannot be dropped.
    [[nodiscard]] std::optional<URL> folderForDrop(const std::vector<URL>& items, std::optional<std::size_t> row) const;
    /// Has the delegate move the items there.
    void drop(const std::vector<URL>& items, const URL& folder);

    /// How lists show their items, which the user chooses for all of them; kept for the next start.
    [[nodiscard]] static ListMode listMode();
    static void setListMode(ListMode);

    /// Whether the list has a search field.
    [[nodiscard]] virtual bool shouldShowSearch() const { return true; }
    /// Puts the query into the search field, as if the user had typed it; an empty one ends the search. The results are
    /// in the SearchController that is then presented over the navigation controller.
    void startSearch(const std::string& query);
    /// Gives the keyboard to the search field, until a shell tells that something else has got it.
    void makeSearchFieldFirstResponder();
    [[nodiscard]] bool searchFieldIsFirstResponder() const { return searchFieldIsFirstResponder_; }

    // For the shells.

    /// Told after every change of the rows and of the state; with no rows when only the state has changed.
    std::function<void(const RowChanges&)> rowsChanged;

    [[nodiscard]] ListState state() const;
    [[nodiscard]] const std::optional<Error>& failure() const;
    [[nodiscard]] ListRow row(std::size_t index) const;
    /// Gives the tags of a row their colours; also for a row that a search found.
    void colorTags(ListRow&) const;
    /// Presses a row: opens it, or, while editing, selects or deselects it.
    void pressRow(std::size_t index);
    void selectAllRows();
    /// Has the delegate do so.
    void askToSelectAll();
    /// The keyboard has gone to the search field, or away from it.
    void setSearchFieldIsFirstResponder(bool isFirst) { searchFieldIsFirstResponder_ = isFirst; }
    /// The rows that can be seen, for which counts, tags and package sizes are fetched, now and when they change. An
    /// empty range fetches none, and has all fetched again the next time: what is below a folder may have changed.
    void setVisibleRows(std::size_t first, std::size_t count);
    /// The item of the first row that can be seen, or is to be seen once the list is complete; none for the top.
    [[nodiscard]] std::optional<URL> firstVisibleItem() const;
    /// Has the list begin with an item when it is complete, if that is there.
    void startAtItem(const URL&);
    /// The row that a complete list is to begin with; 0 from the next time on, and where nobody has asked for one.
    [[nodiscard]] std::size_t takeStartRow();
    /// Has the shell scroll through the list and tell how long its frames took; nothing without one that can.
    void runScrollTest(const ScrollTest&);
    /// By the shell's wish.
    std::function<void(const ScrollTest&)> scrollTestBegan;
    /// Whether something is still being fetched: the listing, or details of visible rows.
    [[nodiscard]] bool isBusy() const;
    /// Whether something has happened to the folder that the rows do not show yet.
    [[nodiscard]] bool isCatchingUp() const;
    /// Lists the folder again after a failure. Also done when the program becomes active and, without a word as long as
    /// the failure is the same, every 5 seconds while the list is the top one of its stack.
    void retry();
    /// Does what pressing a row does outside editing; also for a row that a search found.
    void open(const ListRow&);

protected:
    explicit DocumentListController(const URL& folder);

    /// Whether the list has rows for items of a kind; the answer never changes. In a list that leaves something out,
    /// searching finds it all the same.
    [[nodiscard]] virtual bool shows(EntryKind) const { return true; }
    /// The same for an app library among the drive's top folder's items.
    [[nodiscard]] virtual bool showsLibrary(const CloudContainer&) const { return true; }
    /// Whether pressing the item's row does anything.
    [[nodiscard]] virtual bool isEnabled(const URL&) const { return true; }

    void viewDidLoad() override;
    void viewDidAppear() override;

private:
    struct Listing;

    void read() const;
    void readAnew();
    [[nodiscard]] std::vector<LibraryRow> libraries() const;
    void followLibraries();
    [[nodiscard]] FolderTable shown(FolderTable) const;
    [[nodiscard]] std::vector<FolderChange> shown(std::vector<FolderChange>) const;
    void show(ListState, const RowChanges&);
    void tellItemsChanged();
    void failed(const Error&);
    void wasRemoved();
    void tellRemoval();
    [[nodiscard]] bool isTopOfItsStack() const;
    [[nodiscard]] bool standsOnAnotherList() const;
    void retryLater();
    void fetchDetails();
    void tellScrolled();
    void fetchNextDetails();
    void followTagColors() const;
    void tagColorsChanged();

    URL presentedURL_;
    bool editing_ = false;
    bool searchFieldIsFirstResponder_ = false;
    bool removalIsToBeTold_ = false;
    std::unique_ptr<Listing> listing_;
    std::shared_ptr<SearchController> search_;
    std::weak_ptr<NavigationController> searchedOver_;
};

} // namespace tessel
