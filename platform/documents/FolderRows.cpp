#include "platform/documents/FolderRows.h"

#include "platform/text/TextServices.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace tessel {

namespace {

RowKind rowKind(EntryKind kind)
{
    switch (kind) {
    case EntryKind::File:
        return RowKind::File;
    case EntryKind::Folder:
        return RowKind::Folder;
    case EntryKind::Package:
        return RowKind::Package;
    case EntryKind::Link:
        return RowKind::Link;
    }
    return RowKind::File;
}

} // namespace

ListRow listRow(const URL& url, const FolderEntry& entry, const TextServices& text)
{
    ListRow row{.kind = rowKind(entry.kind),
                .title = text.displayName(url.lastPathComponent()),
                .url = url,
                .size = {},
                .itemCount = {},
                .modified = {},
                .tags = {},
                .inCloud = entry.inCloud};
    if (entry.size >= 0)
        row.size = static_cast<std::uint64_t>(entry.size);
    if (entry.modificationTime != 0)
        row.modified = Date{entry.modificationTime};
    return row;
}

void addDetails(ListRow& row, const ItemDetails& details)
{
    row.itemCount = details.itemCount;
    row.tags = details.tags;
    if (details.packageSize)
        row.size = details.packageSize;
    if (details.isAliasFile) {
        row.kind = RowKind::Link;
        row.size.reset();
    }
}

FolderRows::FolderRows(const URL& folder, std::vector<LibraryRow> libraries, const TextServices& text)
    : folder_(folder), text_(text), libraries_(std::move(libraries))
{
    std::sort(libraries_.begin(), libraries_.end(), [&](const LibraryRow& left, const LibraryRow& right) {
        return text_.compareNames(left.title, right.title) < 0;
    });
}

FolderRows::Place FolderRows::place(std::size_t index) const
{
    std::size_t librariesBefore = 0;
    for (; librariesBefore < shownLibraries_; ++librariesBefore) {
        const auto& library = libraries_[librariesBefore];
        const auto libraryIndex = library.itemsBefore + librariesBefore;
        if (libraryIndex == index)
            return {&library, 0};
        if (libraryIndex > index)
            break;
    }
    return {nullptr, index - librariesBefore};
}

URL FolderRows::url(std::size_t index) const
{
    const auto [library, item] = place(index);
    return library ? library->url : folder_.appending(table_.name(item));
}

ListRow FolderRows::row(std::size_t index) const
{
    const auto [library, item] = place(index);
    return library ? libraryRow(*library) : itemRow(item);
}

ListRow FolderRows::libraryRow(const LibraryRow& library) const
{
    ListRow row{.kind = RowKind::Library,
                .title = library.title,
                .url = library.url,
                .size = {},
                .itemCount = {},
                .modified = {},
                .tags = {},
                .selected = library.selected};
    addKnownDetails(row);
    return row;
}

ListRow FolderRows::itemRow(std::size_t item) const
{
    auto row = listRow(folder_.appending(table_.name(item)), table_.entry(item), text_);
    row.selected = table_.isSelected(item);
    addKnownDetails(row);
    return row;
}

void FolderRows::addKnownDetails(ListRow& row) const
{
    if (const auto known = details_.find(row.url); known != details_.end())
        addDetails(row, known->second.details);
}

std::vector<ListRow> FolderRows::libraryRows() const
{
    std::vector<ListRow> rows;
    for (const auto& library : libraries_)
        rows.push_back(libraryRow(library));
    return rows;
}

std::vector<URL> FolderRows::urls() const
{
    std::vector<URL> result;
    result.reserve(size());
    for (std::size_t index = 0; index < size(); ++index)
        result.push_back(url(index));
    return result;
}

void FolderRows::placeLibraries(bool isComplete)
{
    shownLibraries_ = 0;
    for (auto& library : libraries_) {
        library.itemsBefore = table_.lowerBound(library.title, text_);
        if (isComplete || library.itemsBefore < table_.size())
            shownLibraries_++;
    }
}

void FolderRows::begin(FolderTable table)
{
    table_ = std::move(table);
    placeLibraries(false);
}

void FolderRows::complete(FolderTable table)
{
    table.takeSelectionFrom(table_);
    table_ = std::move(table);
    placeLibraries(true);
}

void FolderRows::clear()
{
    table_ = {};
    shownLibraries_ = 0;
    details_.clear();
}

/// Turns ascending indices of items into those of their rows.
void FolderRows::moveToRows(std::vector<std::size_t>& items) const
{
    std::size_t librariesBefore = 0;
    for (auto& item : items) {
        while (librariesBefore < shownLibraries_ && libraries_[librariesBefore].itemsBefore <= item)
            librariesBefore++;
        item += librariesBefore;
    }
}

/// Libraries need no change of their own: they keep their places among the items.
template <typename Change>
RowChanges FolderRows::changeItems(const Change& change)
{
    const auto librariesBefore = libraries_;
    auto changes = change();
    placeLibraries(true);
    const auto librariesNow = std::exchange(libraries_, librariesBefore);
    moveToRows(changes.removed);
    libraries_ = librariesNow;
    moveToRows(changes.inserted);
    moveToRows(changes.updated);
    return changes;
}

RowChanges FolderRows::apply(const std::vector<FolderChange>& changes)
{
    for (const auto& change : changes)
        if (const auto known = details_.find(folder_.appending(change.name)); known != details_.end()) {
            known->second.stale = true;
            if (!change.entry)
                details_.erase(known);
        }
    return changeItems([&] { return table_.apply(changes, text_); });
}

RowChanges FolderRows::replaceWith(FolderTable newer)
{
    makeDetailsStale();
    return changeItems([&] { return table_.replaceWith(std::move(newer), text_); });
}

bool FolderRows::isSelected(std::size_t index) const
{
    const auto [library, item] = place(index);
    return library ? library->selected : table_.isSelected(item);
}

void FolderRows::setSelected(std::size_t index, bool selected)
{
    const auto [library, item] = place(index);
    if (library)
        libraries_[static_cast<std::size_t>(library - libraries_.data())].selected = selected;
    else
        table_.setSelected(item, selected);
}

std::vector<URL> FolderRows::selectedURLs() const
{
    std::vector<URL> result;
    for (std::size_t index = 0; index < size(); ++index)
        if (isSelected(index))
            result.push_back(url(index));
    return result;
}

std::optional<std::size_t> FolderRows::find(const URL& url) const
{
    for (std::size_t index = 0; index < shownLibraries_; ++index)
        if (libraries_[index].url == url)
            return libraries_[index].itemsBefore + index;
    const auto name = url.lastPathComponent();
    if (folder_.appending(name) != url)
        return std::nullopt;
    const auto item = table_.find(name, text_);
    if (!item)
        return std::nullopt;
    std::vector<std::size_t> index{*item};
    moveToRows(index);
    return index.front();
}

RowChanges FolderRows::select(const std::vector<URL>& wanted)
{
    std::unordered_set<std::string_view> names;
    for (const auto& url : wanted)
        if (folder_.appending(url.lastPathComponent()) == url)
            names.insert(url.lastPathComponent());
    RowChanges changes;
    for (std::size_t index = 0; index < size(); ++index) {
        const auto [library, item] = place(index);
        const bool isWanted =
            library ? std::count(wanted.begin(), wanted.end(), library->url) > 0 : names.contains(table_.name(item));
        if (isSelected(index) == isWanted)
            continue;
        setSelected(index, isWanted);
        changes.updated.push_back(index);
    }
    return changes;
}

void FolderRows::setDetails(const URL& url, const ItemDetails& details)
{
    details_.insert_or_assign(url, KnownDetails{details});
}

std::vector<URL> FolderRows::withoutDetails(std::size_t first, std::size_t count) const
{
    std::vector<URL> result;
    for (std::size_t index = first; index < size() && index - first < count; ++index) {
        auto item = url(index);
        const auto known = details_.find(item);
        if (known == details_.end() || known->second.stale)
            result.push_back(std::move(item));
    }
    return result;
}

void FolderRows::makeDetailsStale()
{
    for (auto& [url, known] : details_)
        known.stale = true;
}

} // namespace tessel
