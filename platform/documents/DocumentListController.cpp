#include "platform/documents/DocumentListController.h"

#include "platform/base/NotificationCenter.h"
#include "platform/base/Platform.h"
#include "platform/cloud/CloudService.h"
#include "platform/documents/FolderRows.h"
#include "platform/documents/SearchController.h"
#include "platform/files/FolderReader.h"
#include "platform/text/TextServices.h"
#include "platform/ui/Application.h"
#include "platform/ui/NavigationController.h"

#include <utility>

namespace tessel {

namespace {

bool isTopFolder(const URL& folder)
{
    const auto container = platform::installed().cloud.defaultContainer();
    return container && container->documentsURL == folder;
}

std::vector<LibraryRow> librariesIn(const URL& folder)
{
    std::vector<LibraryRow> rows;
    if (!isTopFolder(folder))
        return rows;
    for (const auto& library : platform::installed().cloud.libraries())
        rows.push_back({library->documentsURL, library->localizedName});
    return rows;
}

std::string titleOf(const URL& folder)
{
    const auto container = platform::installed().cloud.containerForURL(folder);
    if (container && container->documentsURL == folder)
        return container->localizedName;
    return platform::installed().text.displayName(folder.lastPathComponent());
}

} // namespace

/// The folder's rows and where they come from.
struct DocumentListController::Listing {
    FolderRows rows;
    ListState state = ListState::Loading;
    std::optional<Error> failure;
    std::unique_ptr<FolderReading> reading; ///< none before the list was looked at, and after a failure
    std::size_t firstVisible = 0;
    std::size_t visibleCount = 0;
    NotificationCenter::Observation activation;
};

DocumentListController::DocumentListController(const URL& folder)
    : presentedURL_(folder), listing_(new Listing{.rows = {folder, librariesIn(folder), platform::installed().text},
                                                  .failure = {},
                                                  .reading = {},
                                                  .activation = {}})
{
    setTitle(titleOf(folder));
    listing_->activation =
        platform::installed().notifications.observe(kDidBecomeActiveNotification, [this] { retry(); });
}

DocumentListController::~DocumentListController()
{
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
    tellRemoval();
}

/// Begins to read the folder, once. Also where something is only asked of the list: it is the first look at it.
void DocumentListController::read() const
{
    if (listing_->reading || listing_->state != ListState::Loading)
        return;
    auto* const self = const_cast<DocumentListController*>(this); // what comes back later is told to the list itself
    auto& rows = listing_->rows;
    FolderReadingClient client;
    client.firstRows = [self, &rows](FolderTable table) {
        rows.begin(std::move(table));
        self->show(ListState::Loading, RowChanges::everything());
    };
    client.complete = [self, &rows](FolderTable table) {
        rows.complete(std::move(table));
        self->show(ListState::Complete, RowChanges::everything());
    };
    client.changed = [self, &rows](const std::vector<FolderChange>& changes) {
        if (const auto rowChanges = rows.apply(changes); !rowChanges.empty())
            self->show(ListState::Complete, rowChanges);
        else
            self->fetchDetails(); // what does not show in the row itself may, such as tags
    };
    client.replaced = [self, &rows](FolderTable table) {
        if (const auto rowChanges = rows.replaceWith(std::move(table)); !rowChanges.empty())
            self->show(ListState::Complete, rowChanges);
    };
    client.failed = [self](const Error& error) {
        if (error.code == ErrorCode::kNoSuchFile && self->standsOnAnotherList())
            self->wasRemoved();
        else
            self->failed(error);
    };
    client.removed = [self] { self->wasRemoved(); };
    client.details = [self, &rows](const URL& item, const ItemDetails& details) {
        rows.setDetails(item, details);
        const auto index = rows.find(item);
        if (index && self->rowsChanged)
            self->rowsChanged(RowChanges::update(*index));
    };
    listing_->reading = platform::installed().folders.read(presentedURL_, std::move(client));
}

/// Tells of a new state, and of new rows; the list may be gone afterwards.
void DocumentListController::show(ListState state, const RowChanges& changes)
{
    const auto self = shared_from_this();
    listing_->state = state;
    fetchDetails();
    if (rowsChanged)
        rowsChanged(changes);
    tellItemsChanged();
}

void DocumentListController::tellItemsChanged()
{
    if (const auto listener = delegate.lock())
        listener->documentListControllerItemsChanged(*this);
}

void DocumentListController::failed(const Error& error)
{
    listing_->reading.reset();
    listing_->failure = error;
    listing_->rows.clear();
    show(ListState::Failed, RowChanges::everything());
}

void DocumentListController::wasRemoved()
{
    const auto self = shared_from_this();
    const auto name = platform::installed().text.displayName(presentedURL_.lastPathComponent());
    failed(
        {Domain::General, ErrorCode::kNoSuchFile, "The folder “" + name + "” is gone.", "No such file or directory"});
    removalIsToBeTold_ = true;
    tellRemoval();
}

/// The delegate leaves the list on top, so a list below others waits until it is the one.
void DocumentListController::tellRemoval()
{
    const auto navigation = navigationController();
    if (navigation && navigation->topViewController().get() != this)
        return;
    const auto listener = delegate.lock();
    if (listener && std::exchange(removalIsToBeTold_, false))
        listener->documentListControllerURLWasRemoved(*this);
}

bool DocumentListController::standsOnAnotherList() const
{
    const auto navigation = navigationController();
    return navigation && navigation->viewControllers().front().get() != this;
}

void DocumentListController::retry()
{
    if (listing_->state != ListState::Failed)
        return;
    listing_->failure.reset();
    listing_->state = ListState::Loading;
    removalIsToBeTold_ = false;
    read();
    if (rowsChanged)
        rowsChanged({});
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
    return listing_->rows.row(index);
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
}

void DocumentListController::pressRow(std::size_t index)
{
    auto& rows = listing_->rows;
    if (index >= rows.size())
        return;
    if (!editing_)
        return open(rows.row(index));
    rows.setSelected(index, !rows.isSelected(index));
    show(listing_->state, RowChanges::update(index));
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

void DocumentListController::setVisibleRows(std::size_t first, std::size_t count)
{
    read();
    if (count == 0)
        listing_->rows.makeDetailsStale();
    if (first == listing_->firstVisible && count == listing_->visibleCount)
        return;
    listing_->firstVisible = first;
    listing_->visibleCount = count;
    fetchDetails();
}

void DocumentListController::fetchDetails()
{
    if (listing_->reading)
        listing_->reading->fetchDetails(listing_->rows.withoutDetails(listing_->firstVisible, listing_->visibleCount));
}

bool DocumentListController::isBusy() const
{
    if (!listing_->reading)
        return false;
    return listing_->state == ListState::Loading || listing_->reading->isFetchingDetails();
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
    search_->search(presentedURL_, listing_->rows.libraryRows(), query);
    searchedOver_ = navigation;
    navigation->present(search_, Animated::Yes);
}

} // namespace tessel
