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
    row.tags.clear();
    for (const auto& tag : details.tags)
        row.tags.push_back({tag, std::nullopt});
    if (details.packageSize)
        row.size = details.packageSize;
    if (details.isAliasFile) {
        row.kind = RowKind::Link;
        row.size.reset();
    }
}

FolderRows::FolderRows(const URL& folder, const TextServices& text) : folder_(folder), text_(text)
{
}

RowChanges FolderRows::setLibraries(std::vector<LibraryRow> libraries, bool isComplete)
{
    std::ranges::sort(libraries, [&](const LibraryRow& left, const LibraryRow& right) {
        return text_.compareNames(left.title, right.title) < 0;
    });
    const auto missingIn = [](const std::vector<LibraryRow>& others, const std::vector<LibraryRow>& some) {
        std::vector<std::size_t> indices;
        for (std::size_t index = 0; index < some.size(); ++index)
            if (std::ranges::find(others, some[index].url, &LibraryRow::url) == others.end())
                indices.push_back(index);
        return indices;
    };
    RowChanges changed;
    changed.removed = missingIn(libraries, libraries_);
    changed.inserted = missingIn(libraries_, libraries);
    if (changed.empty())
        return {};
    RowChanges rows;
    rows.removed = rowsOfLibraries(changed.removed);
    for (const auto& before : libraries_)
        if (const auto now = std::ranges::find(libraries, before.url, &LibraryRow::url); now != libraries.end())
            now->selected = before.selected;
        else
            libraryDetails_.forget(before.url.path());
    libraries_ = std::move(libraries);
    libraryDetails_.follow(changed);
    placeLibraries(isComplete);
    rows.inserted = rowsOfLibraries(changed.inserted);
    return rows;
}

/// Where libraries stand, as far as they are shown.
std::vector<std::size_t> FolderRows::rowsOfLibraries(const std::vector<std::size_t>& libraries) const
{
    std::vector<std::size_t> rows;
    for (const auto library : libraries)
        if (library < shownLibraries_)
            rows.push_back(libraries_[library].itemsBefore + library);
    return rows;
}

/// How many libraries come before a row.
std::size_t FolderRows::librariesBefore(std::size_t row) const
{
    std::size_t count = 0;
    while (count < shownLibraries_ && libraries_[count].itemsBefore + count < row)
        count++;
    return count;
}

FolderRows::Place FolderRows::place(std::size_t index) const
{
    const auto before = librariesBefore(index);
    if (before < shownLibraries_ && libraries_[before].itemsBefore + before == index)
        return {&libraries_[before], 0};
    return {nullptr, index - before};
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
    if (const auto* const details = libraryDetails_.find(library.url.path()))
        addDetails(row, *details);
    return row;
}

ListRow FolderRows::itemRow(std::size_t item) const
{
    auto row = listRow(folder_.appending(table_.name(item)), table_.entry(item), text_);
    row.selected = table_.isSelected(item);
    if (const auto* const details = details_.find(table_.name(item)))
        addDetails(row, *details);
    return row;
}

std::vector<ListRow> FolderRows::libraryRows() const
{
    std::vector<ListRow> rows;
    for (const auto& library : libraries_)
        rows.push_back(libraryRow(library));
    return rows;
}

std::vector<std::size_t> FolderRows::rowsWithTags() const
{
    std::vector<std::size_t> items;
    for (std::size_t item = 0; item < table_.size(); ++item)
        if (const auto* const details = details_.find(table_.name(item)); details && !details->tags.empty())
            items.push_back(item);
    moveToRows(items);
    return items;
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
    isComplete_ = false;
    table_ = std::move(table);
    details_.reset(table_.size());
    placeLibraries(false);
}

void FolderRows::complete(FolderTable table)
{
    std::size_t same = 0;
    while (same < std::min(table.size(), table_.size()) && table.name(same) == table_.name(same))
        same++;
    table.takeSelectionFrom(table_);
    if (std::exchange(selectsWhatComes_, false))
        selectNewcomers(table);
    isComplete_ = true;
    table_ = std::move(table);
    details_.resize(same);
    details_.resize(table_.size());
    placeLibraries(true);
}

/// Selects all but what was known and is not selected.
void FolderRows::selectNewcomers(FolderTable& table)
{
    std::unordered_set<std::string_view> left;
    for (std::size_t item = 0; item < table_.size(); ++item)
        if (!table_.isSelected(item))
            left.insert(table_.name(item));
    for (std::size_t item = 0; item < table.size(); ++item)
        if (!left.contains(table.name(item)))
            table.setSelected(item, true);
    for (std::size_t library = shownLibraries_; library < libraries_.size(); ++library)
        libraries_[library].selected = true;
}

void FolderRows::clear()
{
    isComplete_ = false;
    table_ = {};
    shownLibraries_ = 0;
    details_.reset(0);
    libraryDetails_.reset(libraries_.size());
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
    if (changes.reset)
        details_.resize(table_.size());
    else
        details_.follow(changes);
    placeLibraries(true);
    const auto librariesNow = std::exchange(libraries_, librariesBefore);
    moveToRows(changes.removed);
    libraries_ = librariesNow;
    moveToRows(changes.inserted);
    moveToRows(changes.updated);
    return changes;
}

/// What changed may show in the details alone, such as tags.
void FolderRows::markStale(const std::vector<FolderChange>& changes)
{
    for (const auto& change : changes) {
        const auto item = table_.find(change.name, text_);
        if (item)
            details_.makeStale(*item, change.name);
        if (!change.entry)
            details_.forget(change.name);
    }
}

RowChanges FolderRows::apply(const std::vector<FolderChange>& changes)
{
    markStale(changes);
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

SelectedItems FolderRows::selectedItems() const
{
    SelectedItems selected;
    for (std::size_t library = 0; library < shownLibraries_; ++library)
        selected.libraries += libraries_[library].selected ? 1 : 0;
    for (std::size_t item = 0; item < table_.size(); ++item) {
        if (!table_.isSelected(item))
            continue;
        ++selected.count;
        selected.folders += table_.entry(item).kind == EntryKind::Folder ? 1 : 0;
    }
    selected.count += selected.libraries;
    return selected;
}

std::optional<std::size_t> FolderRows::find(const URL& url) const
{
    for (std::size_t library = 0; library < shownLibraries_; ++library)
        if (libraries_[library].url == url)
            return libraries_[library].itemsBefore + library;
    const auto item = findItem(url);
    if (!item)
        return std::nullopt;
    std::vector<std::size_t> row{*item};
    moveToRows(row);
    return row.front();
}

bool FolderRows::isSelected(const URL& url) const
{
    const auto row = find(url);
    return row && isSelected(*row);
}

std::vector<URL> FolderRows::selectedURLs() const
{
    std::vector<URL> result;
    for (std::size_t index = 0; index < size(); ++index)
        if (isSelected(index))
            result.push_back(url(index));
    return result;
}

std::optional<std::size_t> FolderRows::findItem(const URL& url) const
{
    const auto name = url.lastPathComponent();
    return folder_.appending(name) == url ? table_.find(name, text_) : std::nullopt;
}

RowChanges FolderRows::select(const std::vector<URL>& wanted)
{
    selectsWhatComes_ = false;
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

RowChanges FolderRows::selectAll()
{
    selectsWhatComes_ = !isComplete_;
    RowChanges changes;
    for (std::size_t index = 0; index < size(); ++index) {
        if (isSelected(index))
            continue;
        setSelected(index, true);
        changes.updated.push_back(index);
    }
    return changes;
}

std::optional<std::size_t> FolderRows::setDetails(const URL& url, const ItemDetails& details)
{
    for (std::size_t index = 0; index < libraries_.size(); ++index)
        if (libraries_[index].url == url) {
            const bool isShown = libraryDetails_.set(index, url.path(), details) && index < shownLibraries_;
            return isShown ? std::optional(libraries_[index].itemsBefore + index) : std::nullopt;
        }
    const auto item = findItem(url);
    if (!item || !details_.set(*item, url.lastPathComponent(), details))
        return std::nullopt;
    std::vector<std::size_t> row{*item};
    moveToRows(row);
    return row.front();
}

std::vector<URL> FolderRows::takeWithoutDetails(std::size_t first, std::size_t count, std::size_t limit)
{
    first = std::min(first, size());
    const auto end = first + std::min(count, size() - first);
    const auto firstLibrary = librariesBefore(first);
    const auto endLibrary = librariesBefore(end);
    std::vector<URL> result;
    for (const auto library : libraryDetails_.take(firstLibrary, endLibrary, limit))
        result.push_back(libraries_[library].url);
    for (const auto item : details_.take(first - firstLibrary, end - endLibrary, limit - result.size()))
        result.push_back(folder_.appending(table_.name(item)));
    return result;
}

void FolderRows::giveBackDetails()
{
    details_.giveBack();
    libraryDetails_.giveBack();
}

void FolderRows::makeDetailsStale()
{
    details_.makeAllStale([&](std::size_t item) { return table_.name(item); });
    libraryDetails_.makeAllStale([&](std::size_t library) { return libraries_[library].url.path(); });
}

} // namespace tessel
