#include "platform/files/FolderTable.h"

#include "platform/text/TextServices.h"

#include <algorithm>
#include <unordered_set>

namespace tessel {

namespace {

// Beyond this many rows moved at once a pass over the whole table is cheaper than one move of its end for each.
constexpr std::size_t kFewMoves = 8;

// Room for rows to come, so that the first of them does not move the whole table. It costs no memory until it is used.
constexpr std::size_t withRoom(std::size_t rows)
{
    return rows + rows / 16 + 16;
}

// Comparing two names by the language's rules takes about half a microsecond; this many fit into half a frame.
constexpr std::size_t kComparisonsInOneGo = 8000;

} // namespace

/// Where one change belongs in the table.
struct FolderTable::Place {
    std::size_t index; ///< of the row, or of the one before which it belongs
    bool exists;
    const FolderChange* change;
};

FolderEntry FolderTable::entry(std::size_t index) const
{
    const Row& row = rows_[index];
    return {row.size, row.modificationTime, row.kind, row.inCloud};
}

void FolderTable::describe(Row& row, const FolderEntry& entry)
{
    row.size = entry.size;
    row.modificationTime = entry.modificationTime;
    row.kind = entry.kind;
    row.inCloud = entry.inCloud;
}

FolderTable::Row FolderTable::makeRow(std::string_view name, const FolderEntry& entry)
{
    Row row{};
    row.nameOffset = static_cast<std::uint32_t>(names_.size());
    row.nameLength = static_cast<std::uint16_t>(name.size());
    describe(row, entry);
    names_ += name;
    return row;
}

void FolderTable::append(std::string_view name, const FolderEntry& entry)
{
    rows_.push_back(makeRow(name, entry));
}

void FolderTable::setEntry(std::size_t index, const FolderEntry& entry)
{
    describe(rows_[index], entry);
}

std::vector<std::string_view> FolderTable::names() const
{
    std::vector<std::string_view> result;
    result.reserve(rows_.size());
    for (const Row& row : rows_)
        result.push_back(nameOf(row));
    return result;
}

void FolderTable::arrange(std::span<const std::uint32_t> order)
{
    std::vector<Row> arranged;
    arranged.reserve(withRoom(order.size()));
    for (const auto index : order)
        arranged.push_back(rows_[index]);
    rows_ = std::move(arranged);
}

std::size_t FolderTable::lowerBound(std::string_view name, const TextServices& text) const
{
    const auto found = std::partition_point(rows_.begin(), rows_.end(),
                                            [&](const Row& row) { return text.compareNames(nameOf(row), name) < 0; });
    return static_cast<std::size_t>(found - rows_.begin());
}

std::optional<std::size_t> FolderTable::find(std::string_view name, const TextServices& text) const
{
    const auto index = lowerBound(name, text);
    if (index == rows_.size() || nameOf(rows_[index]) != name)
        return std::nullopt;
    return index;
}

std::vector<FolderTable::Place> FolderTable::placesOf(const std::vector<FolderChange>& changes,
                                                      const TextServices& text) const
{
    std::vector<Place> places;
    places.reserve(changes.size());
    for (const auto& change : changes) {
        const auto index = lowerBound(change.name, text);
        const bool exists = index < rows_.size() && nameOf(rows_[index]) == change.name;
        places.push_back({index, exists, &change});
    }
    std::stable_sort(places.begin(), places.end(), [&](const Place& left, const Place& right) {
        if (left.index != right.index)
            return left.index < right.index;
        return text.compareNames(left.change->name, right.change->name) < 0;
    });
    // The later change of a name stands behind the earlier one: keep the last of each run.
    const auto sameName = [](const Place& left, const Place& right) { return left.change->name == right.change->name; };
    places.erase(places.begin(), std::unique(places.rbegin(), places.rend(), sameName).base());
    return places;
}

void FolderTable::keepOnly(const std::function<bool(EntryKind)>& isWanted)
{
    std::erase_if(rows_, [&](const Row& row) {
        const bool goes = !isWanted(row.kind);
        deadBytes_ += goes ? row.nameLength : 0;
        return goes;
    });
    if (deadBytes_ > names_.size() / 2)
        compactNames();
}

RowChanges FolderTable::apply(const std::vector<FolderChange>& changes, const TextServices& text)
{
    RowChanges result;
    std::vector<Place> moved;
    std::size_t removedBefore = 0;
    for (const Place& place : placesOf(changes, text)) {
        const std::size_t newIndex = place.index - removedBefore + result.inserted.size();
        const auto& now = place.change->entry;
        if (place.exists && now) {
            if (*now == entry(place.index))
                continue;
            setEntry(place.index, *now);
            result.updated.push_back(newIndex);
        } else if (place.exists) {
            result.removed.push_back(place.index);
            removedBefore++;
            moved.push_back(place);
        } else if (now) {
            result.inserted.push_back(newIndex);
            moved.push_back(place);
        }
    }
    if (moved.size() <= kFewMoves)
        moveRows(moved);
    else
        mergeRows(moved);
    if (deadBytes_ > names_.size() / 2)
        compactNames();
    return result;
}

void FolderTable::moveRows(const std::vector<Place>& moved)
{
    // From the end, so that the indices before it stay true.
    for (auto place = moved.rbegin(); place != moved.rend(); ++place) {
        const auto position = rows_.begin() + static_cast<std::ptrdiff_t>(place->index);
        if (place->exists) {
            deadBytes_ += position->nameLength;
            rows_.erase(position);
        } else {
            rows_.insert(position, makeRow(place->change->name, *place->change->entry));
        }
    }
}

void FolderTable::mergeRows(const std::vector<Place>& moved)
{
    std::vector<Row> merged;
    merged.reserve(withRoom(rows_.size() + moved.size()));
    auto next = rows_.begin();
    for (const Place& place : moved) {
        const auto position = rows_.begin() + static_cast<std::ptrdiff_t>(place.index);
        merged.insert(merged.end(), next, position);
        next = position;
        if (place.exists)
            deadBytes_ += (next++)->nameLength;
        else
            merged.push_back(makeRow(place.change->name, *place.change->entry));
    }
    merged.insert(merged.end(), next, rows_.end());
    rows_ = std::move(merged);
}

void FolderTable::compactNames()
{
    std::string living;
    living.reserve(names_.size() - deadBytes_);
    for (Row& row : rows_) {
        const auto name = nameOf(row);
        row.nameOffset = static_cast<std::uint32_t>(living.size());
        living += name;
    }
    names_ = std::move(living);
    deadBytes_ = 0;
}

RowChanges FolderTable::replaceWith(FolderTable newer, const TextServices& text)
{
    auto changes = differenceTo(newer, text);
    newer.takeSelectionFrom(*this);
    *this = std::move(newer);
    return changes;
}

RowChanges FolderTable::differenceTo(const FolderTable& newer, const TextServices& text) const
{
    RowChanges result;
    std::size_t comparisons = 0;
    std::size_t oldIndex = 0;
    std::size_t newIndex = 0;
    while (oldIndex < size() && newIndex < newer.size()) {
        if (name(oldIndex) == newer.name(newIndex)) {
            if (entry(oldIndex) != newer.entry(newIndex))
                result.updated.push_back(newIndex);
            oldIndex++;
            newIndex++;
        } else if (++comparisons > kComparisonsInOneGo) {
            return RowChanges::everything();
        } else if (text.compareNames(name(oldIndex), newer.name(newIndex)) < 0) {
            result.removed.push_back(oldIndex++);
        } else {
            result.inserted.push_back(newIndex++);
        }
    }
    while (oldIndex < size())
        result.removed.push_back(oldIndex++);
    while (newIndex < newer.size())
        result.inserted.push_back(newIndex++);
    return result;
}

void FolderTable::takeSelectionFrom(const FolderTable& older)
{
    std::unordered_set<std::string_view> selected;
    for (const Row& row : older.rows_)
        if (row.selected)
            selected.insert(older.nameOf(row));
    if (selected.empty())
        return;
    for (Row& row : rows_)
        row.selected = row.selected || selected.contains(nameOf(row));
}

} // namespace tessel
