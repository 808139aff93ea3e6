#include "platform/documents/DocumentListController.h"

#include "platform/base/Platform.h"
#include "platform/cloud/CloudService.h"
#include "platform/cloud/LibraryChanges.h"
#include "platform/documents/DocumentListController_Listing.h"
#include "platform/documents/SearchController.h"
#include "platform/text/TextServices.h"
#include "platform/ui/Application.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"

#include <utility>

namespace tessel {

namespace {

std::string titleOf(const URL& folder)
{
    const auto container = platform::installed().cloud.containerForURL(folder);
    if (container && container->documentsURL == folder)
        return container->localizedName;
    return platform::installed().text.displayName(folder.lastPathComponent());
}

} // namespace

DocumentListController::DocumentListController(const URL& folder)
    : presentedURL_(folder), listing_(new Listing{.rows = {folder, platform::installed().text},
                                                  .failure = {},
                                                  .reading = {},
                                                  .retry = {},
                                                  .activation = {},
                                                  .libraries = {},
                                                  .tagColors = {}})
{
    setTitle(titleOf(folder));
    listing_->activation = platform::installed().notifications.observe(kDidBecomeActiveNotification, [this] {
        followLibraries();
        retry();
    });
    listing_->libraries =
        platform::installed().notifications.observe(kLibrariesChangedNotification, [this] { followLibraries(); });
}

DocumentListController::~DocumentListController()
{
    listing_->retry.cancel();
    startSearch("");
}

std::shared_ptr<DocumentListController> DocumentListController::create()
{
    const auto container = platform::installed().cloud.defaultContainer();
    return container ? create(container->documentsURL) : nullptr;
}

std::shared_ptr<DocumentListController> DocumentListController::create(const URL& folder)
{
    return std::shared_ptr<DocumentListController>(new DocumentListController(folder));
}

std::string DocumentListController::description() const
{
    return "<" + className() + " '" + presentedURL_.path() + "'>";
}

void DocumentListController::viewDidLoad()
{
    read();
}

void DocumentListController::viewDidAppear()
{
    followLibraries();
    tellRemoval();
    retryLater();
}

std::size_t DocumentListController::containedItemCount() const
{
    read();
    return listing_->rows.size();
}

std::vector<URL> DocumentListController::containedItemURLs() const
{
    read();
    return listing_->rows.urls();
}

void DocumentListController::tellItemsChanged()
{
    if (const auto listener = delegate.lock())
        listener->documentListControllerItemsChanged(*this);
}

ListState DocumentListController::state() const
{
    return listing_->state;
}

const std::optional<Error>& DocumentListController::failure() const
{
    return listing_->failure;
}

ListRow DocumentListController::row(std::size_t index) const
{
    auto row = listing_->rows.row(index);
    colorTags(row);
    row.enabled = isEnabled(row.url);
    return row;
}

SelectedItems DocumentListController::selectedItems() const
{
    return listing_->rows.selectedItems();
}

bool DocumentListController::isSelected(const URL& url) const
{
    return listing_->rows.isSelected(url);
}

std::vector<URL> DocumentListController::selectedItemURLs() const
{
    return listing_->rows.selectedURLs();
}

void DocumentListController::setSelectedItemURLs(const std::vector<URL>& urls)
{
    if (const auto changes = listing_->rows.select(urls); !changes.empty())
        show(listing_->state, changes);
}

void DocumentListController::setEditing(bool editing, Animated)
{
    editing_ = editing;
    if (!editing)
        setSelectedItemURLs({});
    platform::installed().device.tellScreenChanged();
}

void DocumentListController::pressRow(std::size_t index)
{
    auto& rows = listing_->rows;
    if (index >= rows.size())
        return;
    if (!isEnabled(rows.url(index)))
        return;
    if (!editing_)
        return open(rows.row(index));
    rows.setSelected(index, !rows.isSelected(index));
    show(listing_->state, RowChanges::update(index));
}

void DocumentListController::selectAllRows()
{
    if (const auto changes = listing_->rows.selectAll(); !changes.empty())
        show(listing_->state, changes);
}

void DocumentListController::askToSelectAll()
{
    const auto self = shared_from_this();
    if (const auto listener = delegate.lock())
        listener->documentListControllerSelectAllItems(*this);
}

void DocumentListController::makeSearchFieldFirstResponder()
{
    searchFieldIsFirstResponder_ = true;
    platform::installed().device.tellScreenChanged();
}

void DocumentListController::open(const ListRow& row)
{
    const auto self = shared_from_this();
    const auto listener = delegate.lock();
    if (!listener)
        return;
    if (row.kind == RowKind::Folder || row.kind == RowKind::Library)
        listener->documentListControllerDidSelectContainerWithViewController(*this, create(row.url));
    else
        listener->documentListControllerDidSelectItemAtURL(*this, row.url);
}

void DocumentListController::startSearch(const std::string& query)
{
    if (query.empty()) {
        const auto ended = std::exchange(search_, nullptr);
        const auto navigation = searchedOver_.lock();
        if (ended && navigation && navigation->presentedViewController() == ended)
            navigation->dismiss(Animated::Yes);
        return;
    }
    const auto navigation = navigationController();
    if (!navigation || !shouldShowSearch())
        return;
    if (!search_)
        search_ =
            std::make_shared<SearchController>(std::static_pointer_cast<DocumentListController>(shared_from_this()));
    read();
    search_->search(presentedURL_, listing_->rows.libraryRows(), query);
    searchedOver_ = navigation;
    navigation->present(search_, Animated::Yes);
}

} // namespace tessel
