#include "platform/qt/lists/FolderList.h"

#include "platform/documents/SearchController.h"
#include "platform/qt/lists/ListActions.h"
#include "platform/ui/NavigationController.h"

#include <QGuiApplication>
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <iostream>
#include <utility>

namespace tessel::qt {

/// What the controller calls. It can be told apart from that of another list that shows the same controller, such as a
/// page that is still leaving while the next one comes.
struct FolderList::Listener {
    FolderList* list;

    void operator()(const RowChanges& changes) const { list->follow(changes); }
};

namespace {

FolderList::State stateOf(const DocumentListController& controller)
{
    switch (controller.state()) {
    case ListState::Loading:
        return FolderList::Loading;
    case ListState::Complete:
        return FolderList::Complete;
    case ListState::Failed:
        return FolderList::Failed;
    }
    return FolderList::Loading;
}

QString failureTextOf(const DocumentListController& controller)
{
    const auto& failure = controller.failure();
    if (!failure)
        return {};
    return QString::fromStdString(failure->failureReason.empty() ? failure->description : failure->failureReason);
}

/// The search over a list that is on top of its stack.
std::shared_ptr<SearchController> searchOver(const DocumentListController& controller)
{
    const auto navigation = controller.navigationController();
    if (!navigation || navigation->topViewController().get() != &controller)
        return nullptr;
    return std::dynamic_pointer_cast<SearchController>(navigation->presentedViewController());
}

} // namespace

FolderList::FolderList(const std::shared_ptr<DocumentListController>& controller, QObject* parent)
    : RowListModel(parent), controller_(controller)
{
    controller->rowsChanged = Listener{this};
    controller->scrollTestBegan = [list = QPointer(this)](const ScrollTest& test) {
        if (list)
            list->beginScrollTest(test);
    };
    sync();
}

FolderList::~FolderList()
{
    const auto controller = controller_.lock();
    const auto* listener = controller ? controller->rowsChanged.target<Listener>() : nullptr;
    if (listener && listener->list == this)
        controller->rowsChanged = nullptr;
}

/// A list that was never looked at must not be asked for its rows: that has it read its folder.
std::size_t FolderList::rowsNow() const
{
    const auto controller = wasLookedAt_ ? controller_.lock() : nullptr;
    return controller ? controller->containedItemCount() : 0;
}

RowValue FolderList::rowNow(std::size_t index) const
{
    const auto controller = controller_.lock();
    return controller ? folderRowValue(controller->row(index)) : RowValue();
}

void FolderList::follow(const RowChanges& changes)
{
    wasLookedAt_ = true;
    announce(changes);
    syncState();
    if (!changes.empty())
        emit selectionChanged();
}

void FolderList::sync()
{
    const auto controller = controller_.lock();
    if (!controller)
        return;
    if (!wasLookedAt_ && controller->isViewLoaded())
        follow({});
    syncState();
    if (std::exchange(editing_, controller->editing()) != controller->editing())
        emit editingChanged();
    const bool thumbnails = DocumentListController::listMode() == ListMode::Thumbnails;
    if (std::exchange(thumbnails_, thumbnails) != thumbnails)
        emit thumbnailsChanged();
    syncSearch();
}

void FolderList::syncState()
{
    const auto controller = controller_.lock();
    if (!controller)
        return;
    const auto state = stateOf(*controller);
    const auto failureText = failureTextOf(*controller);
    if (state == state_ && failureText == failureText_)
        return;
    state_ = state;
    failureText_ = failureText;
    emit stateChanged();
}

void FolderList::syncSearch()
{
    const auto controller = controller_.lock();
    if (!controller)
        return;
    const bool focused = controller->searchFieldIsFirstResponder();
    if (std::exchange(searchFocused_, focused) != focused)
        emit searchFocusedChanged();
    const auto search = searchOver(*controller);
    const auto text = search ? QString::fromStdString(search->query()) : QString();
    const bool isTheSame = search == (results_ ? results_->controller() : nullptr);
    if (isTheSame && text == searchText_)
        return;
    searchText_ = text;
    if (!isTheSame) {
        if (results_)
            results_->deleteLater();
        results_ = search ? new SearchList(search, controller, this) : nullptr;
    }
    emit searchingChanged();
}

void FolderList::setThumbnails(bool thumbnails)
{
    DocumentListController::setListMode(thumbnails ? ListMode::Thumbnails : ListMode::Rows);
    sync();
}

bool FolderList::showsSearch() const
{
    const auto controller = controller_.lock();
    return controller && controller->shouldShowSearch();
}

void FolderList::press(int row)
{
    const auto controller = controller_.lock();
    const auto now = indexNow(row);
    if (controller && now)
        controller->pressRow(*now);
}

void FolderList::toggle(int row)
{
    const auto controller = controller_.lock();
    if (controller && controller->editing())
        press(row);
}

void FolderList::selectAll()
{
    const auto controller = controller_.lock();
    if (controller && controller->editing())
        controller->askToSelectAll();
}

void FolderList::clearSelection()
{
    const auto controller = controller_.lock();
    if (controller && controller->editing())
        controller->setSelectedItemURLs({});
}

void FolderList::beginScrollTest(const ScrollTest& test)
{
    scrollTest_ = test.name;
    DocumentListController::setListMode(test.mode);
    // Once the other view is there, if it is one.
    QTimer::singleShot(std::chrono::milliseconds(500), this, [this, test] {
        emit scrollTestBegan(test.iterations > 0 ? test.iterations : 300, test.delta > 0 ? test.delta : 40);
    });
}

void FolderList::endScrollTest(const QVariantList& milliseconds) const
{
    std::vector<double> times;
    for (const auto& time : milliseconds)
        times.push_back(time.toDouble());
    std::sort(times.begin(), times.end());
    const auto at = [&](double part) {
        return times.empty() ? 0.0 : times[static_cast<std::size_t>(part * static_cast<double>(times.size() - 1))];
    };
    std::cout << scrollTest_ << ": " << times.size() << " frames, median " << at(0.5) << " ms, 95th percentile "
              << at(0.95) << " ms, longest " << at(1) << " ms" << std::endl;
    QGuiApplication::quit();
}

int FolderList::takeStartRow()
{
    const auto controller = controller_.lock();
    return controller ? static_cast<int>(controller->takeStartRow()) : 0;
}

QVariantList FolderList::actions() const
{
    const auto controller = controller_.lock();
    return controller ? actionsOf(*controller) : QVariantList();
}

QVariantList FolderList::menu() const
{
    const auto controller = controller_.lock();
    return controller ? menuOf(*controller) : QVariantList();
}

void FolderList::perform(int row, int code)
{
    const auto controller = controller_.lock();
    const auto now = indexNow(row);
    if (controller && now)
        performEntry(controller, code, controller->row(*now).url, viewOfRow(row));
}

void FolderList::setVisibleRange(int first, int count)
{
    firstVisible_ = static_cast<std::size_t>(std::max(first, 0));
    visibleCount_ = static_cast<std::size_t>(std::max(count, 0));
    tellVisibleRows();
}

void FolderList::setCovered(bool covered)
{
    covered_ = covered;
    tellVisibleRows();
}

/// That nothing is seen is only told after something was: before, it would have the folder read.
void FolderList::tellVisibleRows()
{
    const auto controller = controller_.lock();
    const auto count = covered_ ? 0 : visibleCount_;
    if (!controller || (count == 0 && !toldVisibleRows_))
        return;
    toldVisibleRows_ = count > 0;
    controller->setVisibleRows(count > 0 ? firstVisible_ : 0, count);
}

void FolderList::retry()
{
    if (const auto controller = controller_.lock())
        controller->retry();
}

void FolderList::searchFieldFocused(bool isFocused)
{
    if (const auto controller = controller_.lock())
        controller->setSearchFieldIsFirstResponder(isFocused);
    sync();
}

void FolderList::search(const QString& text)
{
    if (const auto controller = controller_.lock())
        controller->startSearch(text.toStdString());
    syncSearch();
}

void FolderList::endSearch()
{
    search({});
}

} // namespace tessel::qt
