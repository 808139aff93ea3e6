#include "platform/base/Platform.h"
#include "platform/cloud/CloudService.h"
#include "platform/documents/DocumentListController_Listing.h"
#include "platform/text/FilledText.h"
#include "platform/text/TextServices.h"
#include "platform/ui/Application.h"
#include "platform/ui/NavigationController.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tessel {

namespace {

constexpr double kSecondsBetweenRetries = 5;

// More rows than any screen has. Of a list that is seen as a whole one change is looked up without asking for all the
// other rows again.
constexpr std::size_t kDetailsInOneGo = 256;

bool isTopFolder(const URL& folder)
{
    const auto container = platform::installed().cloud.defaultContainer();
    return container && container->documentsURL == folder;
}

} // namespace

/// Begins to read the folder, once. Also where something is only asked of the list: it is the first look at it.
void DocumentListController::read() const
{
    if (!listing_->reading)
        const_cast<DocumentListController*>(this)->readAnew(); // what comes back later is told to the list itself
}

void DocumentListController::readAnew()
{
    auto& rows = listing_->rows;
    rows.setLibraries(libraries(), false);
    FolderReadingClient client;
    client.firstRows = [this, &rows](FolderTable table) {
        rows.begin(shown(std::move(table)));
        show(ListState::Loading, RowChanges::everything());
    };
    client.complete = [this, &rows](FolderTable table) {
        rows.complete(shown(std::move(table)));
        show(ListState::Complete, RowChanges::everything());
    };
    client.changed = [this, &rows](const std::vector<FolderChange>& changes) {
        if (const auto rowChanges = rows.apply(shown(changes)); !rowChanges.empty())
            show(ListState::Complete, rowChanges);
        else
            fetchDetails(); // what does not show in the row itself may, such as tags
    };
    client.replaced = [this, &rows](FolderTable table) {
        const auto rowChanges = rows.replaceWith(shown(std::move(table)));
        if (listing_->state != ListState::Complete) // it can be read again
            show(ListState::Complete, RowChanges::everything());
        else if (!rowChanges.empty())
            show(ListState::Complete, rowChanges);
        else
            fetchDetails();
    };
    client.failed = [this](const Error& error) {
        if (listing_->failure && listing_->failure->code == error.code)
            retryLater(); // as before, and told then
        else if (error.code == ErrorCode::kNoSuchFile && standsOnAnotherList())
            wasRemoved();
        else
            failed(error);
    };
    client.removed = [this] { wasRemoved(); };
    client.details = [this, &rows](const URL& item, const ItemDetails& details) {
        const auto row = rows.setDetails(item, details);
        fetchDetails();
        if (row && rowsChanged)
            rowsChanged(RowChanges::update(*row));
    };
    listing_->reading = platform::installed().folders.read(presentedURL_, std::move(client));
}

std::vector<LibraryRow> DocumentListController::libraries() const
{
    std::vector<LibraryRow> rows;
    if (!isTopFolder(presentedURL_))
        return rows;
    for (const auto& library : platform::installed().cloud.libraries())
        if (showsLibrary(*library))
            rows.push_back({library->documentsURL, library->localizedName});
    return rows;
}

void DocumentListController::followLibraries()
{
    if (!listing_->reading)
        return;
    if (const auto changes = listing_->rows.setLibraries(libraries(), listing_->state == ListState::Complete);
        !changes.empty())
        show(listing_->state, changes);
}

FolderTable DocumentListController::shown(FolderTable table) const
{
    constexpr std::array kKinds = {EntryKind::File, EntryKind::Folder, EntryKind::Package, EntryKind::Link};
    const auto isShown = [this](EntryKind kind) { return shows(kind); };
    if (!std::ranges::all_of(kKinds, isShown))
        table.keepOnly(isShown);
    return table;
}

std::vector<FolderChange> DocumentListController::shown(std::vector<FolderChange> changes) const
{
    for (auto& change : changes)
        if (change.entry && !shows(change.entry->kind))
            change.entry.reset();
    return changes;
}

/// Tells of a new state, and of new rows; the list may be gone afterwards.
void DocumentListController::show(ListState state, const RowChanges& changes)
{
    const auto self = shared_from_this();
    listing_->state = state;
    if (state != ListState::Failed) {
        listing_->failure.reset();
        removalIsToBeTold_ = false;
    }
    fetchDetails();
    if (rowsChanged)
        rowsChanged(changes);
    tellItemsChanged();
}

void DocumentListController::failed(const Error& error)
{
    listing_->failure = error;
    listing_->rows.clear();
    retryLater();
    show(ListState::Failed, RowChanges::everything());
}

void DocumentListController::wasRemoved()
{
    const auto self = shared_from_this();
    const auto& text = platform::installed().text;
    const auto name = text.displayName(presentedURL_.lastPathComponent());
    failed({Domain::General, ErrorCode::kNoSuchFile, localizedFilledText("The folder “%@” is gone.", {name}),
            text.localized("No such file or directory")});
    removalIsToBeTold_ = true;
    tellRemoval();
}

/// The delegate leaves the list on top, so a list below others waits until it is the one.
void DocumentListController::tellRemoval()
{
    if (!isTopOfItsStack())
        return;
    const auto listener = delegate.lock();
    if (listener && std::exchange(removalIsToBeTold_, false))
        listener->documentListControllerURLWasRemoved(*this);
}

bool DocumentListController::isTopOfItsStack() const
{
    const auto navigation = navigationController();
    return !navigation || navigation->topViewController().get() == this;
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
    readAnew();
    if (rowsChanged)
        rowsChanged({});
}

/// A failed list that is on screen looks now and then whether its folder can be read again, and shows nothing of that
/// before it is so: what a reading cannot watch, such as a folder that is gone, comes back without a word.
void DocumentListController::retryLater()
{
    listing_->retry.cancel();
    if (!listing_->failure)
        return;
    const auto weak = std::weak_ptr(shared_from_this());
    listing_->retry = DispatchQueue::main().after(kSecondsBetweenRetries, [this, weak] {
        const auto self = weak.lock();
        const bool isOnScreen = self && isTopOfItsStack();
        if (isOnScreen && listing_->state == ListState::Failed)
            readAnew();
    });
}

void DocumentListController::setVisibleRows(std::size_t first, std::size_t count)
{
    read();
    if (count == 0)
        listing_->rows.makeDetailsStale();
    if (first == listing_->firstVisible && count == listing_->visibleCount)
        return;
    if (count > 0 && first != listing_->firstVisible)
        tellScrolled();
    listing_->firstVisible = first;
    listing_->visibleCount = count;
    listing_->rows.giveBackDetails();
    fetchNextDetails();
}

void DocumentListController::tellScrolled()
{
    constexpr double kSecondsOfRest = 0.3;
    listing_->scrolled.cancel();
    listing_->scrolled = DispatchQueue::main().after(
        kSecondsOfRest, [] { platform::installed().notifications.post(kScreenDidChangeNotification); });
}

std::optional<URL> DocumentListController::firstVisibleItem() const
{
    if (listing_->startItem)
        return listing_->startItem;
    const auto first = listing_->firstVisible;
    return first > 0 && first < listing_->rows.size() ? std::optional(listing_->rows.url(first)) : std::nullopt;
}

void DocumentListController::startAtItem(const URL& item)
{
    listing_->startItem = item;
}

std::size_t DocumentListController::takeStartRow()
{
    const auto item = std::exchange(listing_->startItem, std::nullopt);
    return item ? listing_->rows.find(*item).value_or(0) : 0;
}

/// Goes on with those that are missing, once those that were asked for have come.
void DocumentListController::fetchDetails()
{
    if (listing_->reading && !listing_->reading->isFetchingDetails())
        fetchNextDetails();
}

void DocumentListController::fetchNextDetails()
{
    listing_->reading->fetchDetails(
        listing_->rows.takeWithoutDetails(listing_->firstVisible, listing_->visibleCount, kDetailsInOneGo));
}

bool DocumentListController::isBusy() const
{
    if (!listing_->reading)
        return false;
    return listing_->state == ListState::Loading || listing_->reading->isFetchingDetails();
}

bool DocumentListController::isCatchingUp() const
{
    return listing_->reading && listing_->reading->isCatchingUp();
}

} // namespace tessel
