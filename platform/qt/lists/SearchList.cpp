#include "platform/qt/lists/SearchList.h"

#include "platform/documents/DocumentListController.h"
#include "platform/documents/SearchController.h"
#include "platform/qt/lists/ListActions.h"

#include <utility>

namespace tessel::qt {

/// What the controller calls; see FolderList's.
struct SearchList::Listener {
    SearchList* list;

    void operator()() const { list->follow(); }
};

namespace {

/// How one list of results became the next: others were added, or it is another list.
RowChanges changesBetween(const std::vector<URL>& before, const std::vector<ListRow>& now)
{
    RowChanges changes;
    auto next = before.begin();
    for (std::size_t index = 0; index < now.size(); ++index)
        if (next != before.end() && (next->isSameObject(now[index].url) || *next == now[index].url))
            ++next;
        else
            changes.inserted.push_back(index);
    return next == before.end() ? changes : RowChanges::everything();
}

} // namespace

SearchList::SearchList(const std::shared_ptr<SearchController>& controller,
                       const std::shared_ptr<DocumentListController>& list, QObject* parent)
    : RowListModel(parent), controller_(controller), list_(list)
{
    controller->resultsChanged = Listener{this};
    follow();
}

SearchList::~SearchList()
{
    const auto controller = controller_.lock();
    const auto* listener = controller ? controller->resultsChanged.target<Listener>() : nullptr;
    if (listener && listener->list == this)
        controller->resultsChanged = nullptr;
}

std::size_t SearchList::rowsNow() const
{
    const auto controller = controller_.lock();
    return controller ? controller->results().size() : 0;
}

RowValue SearchList::rowNow(std::size_t index) const
{
    const auto controller = controller_.lock();
    return controller ? searchRowValue(controller->results()[index]) : RowValue();
}

void SearchList::follow()
{
    const auto controller = controller_.lock();
    if (!controller)
        return;
    const auto changes = changesBetween(told_, controller->results());
    told_.clear();
    for (const auto& result : controller->results())
        told_.push_back(result.url);
    announce(changes);
    if (std::exchange(busy_, controller->isBusy()) != controller->isBusy())
        emit busyChanged();
}

void SearchList::press(int row)
{
    const auto controller = controller_.lock();
    const auto now = indexNow(row);
    if (controller && now)
        controller->pressResult(*now);
}

QVariantList SearchList::actions() const
{
    const auto list = list_.lock();
    return list ? actionsOf(*list) : QVariantList();
}

QVariantList SearchList::menu() const
{
    const auto list = list_.lock();
    return list ? menuOf(*list) : QVariantList();
}

void SearchList::perform(int row, int code)
{
    const auto controller = controller_.lock();
    const auto list = list_.lock();
    const auto now = indexNow(row);
    if (!controller || !list || !now)
        return;
    const auto url = controller->results()[*now].url;
    performEntry(list, code, url, viewOfRow(row));
}

} // namespace tessel::qt
