#include "platform/documents/DocumentTargetSelectionController.h"

#include "platform/base/Platform.h"
#include "platform/cloud/CloudService.h"
#include "platform/text/TextServices.h"

#include <utility>

namespace tessel {

namespace {

/// The folders in a folder, and in the drive's top one the libraries. Those that are being moved can be seen, but not
/// gone into.
class TargetListController final : public DocumentListController {
public:
    TargetListController(const URL& folder, std::shared_ptr<const MoveDestinations> destinations, bool showsLibraries)
        : DocumentListController(folder), destinations_(std::move(destinations)), showsLibraries_(showsLibraries),
          leadsOn_(destinations_->leadsOn(folder))
    {
    }

    [[nodiscard]] std::string className() const override { return "TargetListController"; }
    [[nodiscard]] bool shouldShowSearch() const override { return false; }

protected:
    [[nodiscard]] bool shows(EntryKind kind) const override { return kind == EntryKind::Folder && leadsOn_; }
    [[nodiscard]] bool showsLibrary(const CloudContainer& library) const override
    {
        return showsLibraries_ && destinations_->reaches(library);
    }
    [[nodiscard]] bool isEnabled(const URL& folder) const override { return !destinations_->isMoved(folder); }

private:
    const std::shared_ptr<const MoveDestinations> destinations_;
    const bool showsLibraries_;
    const bool leadsOn_;
};

} // namespace

std::shared_ptr<DocumentTargetSelectionController> DocumentTargetSelectionController::create(
    std::vector<URL> itemsToMove, Kind kind)
{
    auto picker = std::make_shared<DocumentTargetSelectionController>(std::move(itemsToMove), kind);
    return picker->goToItems() ? picker : nullptr;
}

DocumentTargetSelectionController::DocumentTargetSelectionController(std::vector<URL> itemsToMove, Kind kind)
    : destinations_(std::make_shared<MoveDestinations>(std::move(itemsToMove))), kind_(kind)
{
    presentationStyle = PresentationStyle::OverCurrentContext;
    setToolbarHidden(false);
}

std::shared_ptr<DocumentTargetSelectionController> DocumentTargetSelectionController::shared()
{
    return std::static_pointer_cast<DocumentTargetSelectionController>(shared_from_this());
}

bool DocumentTargetSelectionController::goToItems()
{
    if (itemsToMove().empty())
        return false;
    const auto folder = itemsToMove().front().deletingLastPathComponent();
    const auto container = platform::installed().cloud.containerForURL(folder);
    const auto lists = DocumentListController::listControllerHierarchyForURL(folder);
    if (!container || !lists)
        return false;
    Stack stack;
    for (const auto& list : *lists)
        if (kind_ == Kind::AcrossContainers || container->documentsURL.contains(list->presentedURL()))
            stack.push_back(listOf(list->presentedURL()));
    setViewControllers(std::move(stack), Animated::No);
    return true;
}

std::shared_ptr<DocumentListController> DocumentTargetSelectionController::listOf(const URL& folder)
{
    const auto& text = platform::installed().text;
    auto list = std::make_shared<TargetListController>(folder, destinations_, kind_ == Kind::AcrossContainers);
    list->delegate = std::shared_ptr<DocumentListControllerDelegate>(shared(), this);
    list->navigationItem.setPrompt(
        text.localizedCount(".DICT.MOVE_ITEMS.%d", static_cast<std::int64_t>(itemsToMove().size())));
    list->navigationItem.setRightItems({BarButtonItem::system(BarButtonItem::System::Cancel, [weak = weak_from_this()] {
        if (const auto self = std::static_pointer_cast<DocumentTargetSelectionController>(weak.lock()))
            self->end();
    })});
    list->view().setBackgroundColor(Color::white());
    list->setToolbarItems(toolbarOf(folder));
    return list;
}

BarButtonItems DocumentTargetSelectionController::toolbarOf(const URL& folder)
{
    using Self = DocumentTargetSelectionController;
    const bool takesFolders =
        !destinations_->isMoved(folder) && MoveDestinations::takesFolders(folder) && destinations_->leadsOn(folder);
    return {button("New Folder", takesFolders, &Self::makeFolder, folder), BarButtonItem::flexibleSpace(),
            button("Move", destinations_->accepts(folder), &Self::choose, folder)};
}

std::shared_ptr<BarButtonItem> DocumentTargetSelectionController::button(
    const char* title, bool enabled, void (DocumentTargetSelectionController::*action)(const URL&), const URL& folder)
{
    auto item =
        BarButtonItem::titled(platform::installed().text.localized(title), [weak = weak_from_this(), action, folder] {
            const auto self = weak.lock();
            if (self)
                (static_cast<DocumentTargetSelectionController&>(*self).*action)(folder);
        });
    item->setEnabled(enabled);
    return item;
}

void DocumentTargetSelectionController::choose(const URL& folder)
{
    const auto self = shared();
    if (const auto listener = targetDelegate.lock())
        listener->documentTargetSelectionControllerDidSelectItemAtURL(*this, folder);
}

void DocumentTargetSelectionController::makeFolder(const URL& folder)
{
    const auto listener = targetDelegate.lock();
    if (!listener)
        return;
    listener->documentTargetSelectionControllerWantsNewFolder(*this, folder,
                                                              [weak = std::weak_ptr(shared())](const URL& made) {
                                                                  if (const auto self = weak.lock())
                                                                      self->showFolder(made);
                                                              });
}

void DocumentTargetSelectionController::showFolder(const URL& folder)
{
    pushViewController(listOf(folder), Animated::Yes);
}

void DocumentTargetSelectionController::end()
{
    if (const auto presenting = presentingViewController())
        presenting->dismiss(Animated::Yes);
}

void DocumentTargetSelectionController::documentListControllerDidSelectContainerWithViewController(
    DocumentListController&, const std::shared_ptr<DocumentListController>& newList)
{
    showFolder(newList->presentedURL());
}

} // namespace tessel
