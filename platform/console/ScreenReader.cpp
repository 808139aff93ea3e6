#include "platform/console/ScreenReader.h"

#include "platform/base/Platform.h"
#include "platform/console/PreviewScreen.h"
#include "platform/console/ScreenControls.h"
#include "platform/console/ShownControllers.h"
#include "platform/documents/DocumentListController.h"
#include "platform/documents/SearchController.h"
#include "platform/documents/UnavailableViewController.h"
#include "platform/documents/UpgradeViewController.h"
#include "platform/text/TextServices.h"
#include "platform/ui/NavigationController.h"

namespace tessel {

namespace {

std::string_view kindName(RowKind kind)
{
    switch (kind) {
    case RowKind::File:
        return "file";
    case RowKind::Folder:
        return "folder";
    case RowKind::Package:
        return "package";
    case RowKind::Link:
        return "link";
    case RowKind::Library:
        return "library";
    }
    return "";
}

std::string tagList(const std::vector<ListTag>& tags)
{
    const auto& text = platform::installed().text;
    std::string list = "tags ";
    for (const auto& tag : tags) {
        if (&tag != &tags.front())
            list += ", ";
        list += text.displayName(tag.name);
    }
    return list;
}

std::vector<std::string> rowParts(const ListRow& row)
{
    const auto& text = platform::installed().text;
    std::vector<std::string> parts{std::string(kindName(row.kind)), row.title + (row.enabled ? "" : " (disabled)")};
    if (row.size)
        parts.push_back(text.byteCount(*row.size, ByteCountStyle::File));
    if (row.itemCount)
        parts.push_back(text.localizedCount(".DICT.ITEMS.%d", *row.itemCount));
    if (!row.tags.empty())
        parts.push_back(tagList(row.tags));
    if (row.inCloud)
        parts.emplace_back("in the cloud");
    return parts;
}

ScreenElement rowElement(const ListRow& row, std::function<void()> press)
{
    return {"row", rowParts(row), row.title, row.enabled ? std::move(press) : nullptr, row.url};
}

std::string reason(const std::optional<Error>& failure)
{
    if (!failure)
        return "";
    return failure->failureReason.empty() ? failure->description : failure->failureReason;
}

void addBackButton(Screen& screen, const ShownControllers& shown)
{
    const auto target = shown.navigation->backTarget();
    if (!target || shown.isStackCovered)
        return;
    const auto& title = target->navigationItem.title();
    screen.push_back({"back", {title}, title, [navigation = shown.navigation] { navigation->pressBack(); }, {}});
}

void addNavigationBar(Screen& screen, const ShownControllers& shown)
{
    addLine(screen, "title", {shown.top->navigationItem.title(), shown.top->navigationItem.prompt()});
    addBackButton(screen, shown);
    if (!shown.peek)
        addBarItems(screen, shown.top->navigationItem);
}

void addListRows(Screen& screen, const std::shared_ptr<DocumentListController>& list)
{
    std::vector<std::string> selected;
    for (std::size_t index = 0; index < list->containedItemCount(); ++index) {
        const auto row = list->row(index);
        screen.push_back(rowElement(row, [list, index] { list->pressRow(index); }));
        if (row.selected)
            selected.push_back(row.title);
    }
    for (auto& title : selected)
        addLine(screen, "selected", {std::move(title)});
}

void addListState(Screen& screen, const DocumentListController& list)
{
    switch (list.state()) {
    case ListState::Loading:
        return addLine(screen, "loading", {list.title()});
    case ListState::Failed:
        return addLine(screen, "failed", {list.title(), reason(list.failure())});
    case ListState::Complete:
        if (list.containedItemCount() == 0)
            addLine(screen, "empty", {list.title()});
    }
}

void addSearchResults(Screen& screen, const std::shared_ptr<SearchController>& search)
{
    addLine(screen, "search", {platform::installed().text.displayName(search->query())});
    const auto& results = search->results();
    for (std::size_t index = 0; index < results.size(); ++index)
        screen.push_back(rowElement(results[index], [search, index] { search->pressResult(index); }));
}

void addSearchState(Screen& screen, const SearchController& search, const std::string& listTitle)
{
    if (search.isBusy())
        addLine(screen, "loading", {listTitle});
    else if (search.results().empty())
        addLine(screen, "empty", {listTitle});
}

void addContent(Screen& screen, const ShownControllers& shown)
{
    if (shown.search)
        addSearchResults(screen, shown.search);
    else if (shown.list)
        addListRows(screen, shown.list);
    else if (shown.preview)
        addPreview(screen, *shown.preview);
    else if (const auto* unavailable = dynamic_cast<const UnavailableViewController*>(shown.top.get()))
        addLine(screen, "unavailable", {unavailable->message()});
    else if (const auto* upgrade = dynamic_cast<const UpgradeViewController*>(shown.top.get()))
        addOfferPage(screen, upgrade->offer());
    else
        addPage(screen, shown.top->view());
}

void addState(Screen& screen, const ShownControllers& shown)
{
    if (shown.search)
        addSearchState(screen, *shown.search, shown.top->title());
    else if (shown.list)
        addListState(screen, *shown.list);
    else if (shown.preview)
        addPreviewState(screen, shown.preview);
    else
        addButtons(screen, shown.top->view());
}

} // namespace

Screen readScreen()
{
    Screen screen;
    const auto shown = ShownControllers::now();
    if (shown.alert) {
        addAlert(screen, shown.alert);
    } else if (shown.top) {
        addNavigationBar(screen, shown);
        addContent(screen, shown);
        if (!shown.isStackCovered)
            addToolbar(screen, *shown.navigation, *shown.top);
        addState(screen, shown);
    }
    return screen;
}

} // namespace tessel
