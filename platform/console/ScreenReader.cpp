#include "platform/console/ScreenReader.h"

#include "platform/base/Platform.h"
#include "platform/console/ShownControllers.h"
#include "platform/documents/DocumentListController.h"
#include "platform/documents/SearchController.h"
#include "platform/documents/UnavailableViewController.h"
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

std::string tagList(const std::vector<std::string>& tags)
{
    const auto& text = platform::installed().text;
    std::string list = "tags ";
    for (const auto& tag : tags) {
        if (&tag != &tags.front())
            list += ", ";
        list += text.displayName(tag);
    }
    return list;
}

std::vector<std::string> rowParts(const ListRow& row)
{
    const auto& text = platform::installed().text;
    std::vector<std::string> parts{std::string(kindName(row.kind)), row.title};
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
    return {"row", rowParts(row), row.title, std::move(press), row.url};
}

/// Adds what only informs; a key without a value is left out.
void add(Screen& screen, std::string_view key, std::vector<std::string> parts)
{
    std::erase(parts, "");
    if (!parts.empty())
        screen.push_back({key, std::move(parts), {}, {}, {}});
}

std::string reason(const std::optional<Error>& failure)
{
    if (!failure)
        return "";
    return failure->failureReason.empty() ? failure->description : failure->failureReason;
}

void addNavigationBar(Screen& screen, const ShownControllers& shown)
{
    add(screen, "title", {shown.top->navigationItem.title()});
    const auto target = shown.navigation->backTarget();
    if (!target)
        return;
    const auto& title = target->navigationItem.title();
    screen.push_back({"back", {title}, title, [navigation = shown.navigation] { navigation->pressBack(); }, {}});
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
        add(screen, "selected", {std::move(title)});
}

void addListState(Screen& screen, const DocumentListController& list)
{
    switch (list.state()) {
    case ListState::Loading:
        return add(screen, "loading", {list.title()});
    case ListState::Failed:
        return add(screen, "failed", {list.title(), reason(list.failure())});
    case ListState::Complete:
        if (list.containedItemCount() == 0)
            add(screen, "empty", {list.title()});
    }
}

void addSearch(Screen& screen, const std::shared_ptr<SearchController>& search, const std::string& listTitle)
{
    add(screen, "search", {platform::installed().text.displayName(search->query())});
    const auto& results = search->results();
    for (std::size_t index = 0; index < results.size(); ++index)
        screen.push_back(rowElement(results[index], [search, index] { search->pressResult(index); }));
    if (search->isBusy())
        add(screen, "loading", {listTitle});
    else if (results.empty())
        add(screen, "empty", {listTitle});
}

} // namespace

Screen readScreen()
{
    Screen screen;
    const auto shown = ShownControllers::now();
    if (!shown.top)
        return screen;
    addNavigationBar(screen, shown);
    if (shown.search) {
        addSearch(screen, shown.search, shown.top->title());
    } else if (shown.list) {
        addListRows(screen, shown.list);
        addListState(screen, *shown.list);
    } else if (const auto* unavailable = dynamic_cast<const UnavailableViewController*>(shown.top.get())) {
        add(screen, "unavailable", {unavailable->message()});
    }
    return screen;
}

} // namespace tessel
