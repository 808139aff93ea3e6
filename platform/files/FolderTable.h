#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

class TextServices;

enum class EntryKind : std::uint8_t { File, Folder, Package, Link };

/// What a folder list keeps of each of its items, besides the name.
struct FolderEntry {
    std::int64_t size = -1;            ///< bytes; negative while unknown
    std::int64_t modificationTime = 0; ///< nanoseconds since 1970; 0 while unknown
    EntryKind kind = EntryKind::File;
    bool inCloud = false; ///< a placeholder stands for it

    friend bool operator==(const FolderEntry&, const FolderEntry&) = default;
};

/// One item as it is now: `entry` is none when it is gone.
struct FolderChange {
    std::string name;
    std::optional<FolderEntry> entry;
};

/// How one state of a list became the next, so that a shell can follow it row by row. All indices ascend.
struct RowChanges {
    bool reset = false;                ///< too much has changed to tell: every row may be another one
    std::vector<std::size_t> removed;  ///< indices before the change
    std::vector<std::size_t> inserted; ///< indices after the change
    std::vector<std::size_t> updated;  ///< indices after the change

    [[nodiscard]] static RowChanges everything()
    {
        return {.reset = true, .removed = {}, .inserted = {}, .updated = {}};
    }
    [[nodiscard]] static RowChanges update(std::size_t row)
    {
        return {.removed = {}, .inserted = {}, .updated = {row}};
    }
    [[nodiscard]] bool empty() const { return !reset && removed.empty() && inserted.empty() && updated.empty(); }
};

/// The items of one folder, one entry of 24 bytes and the bytes of its name each, in the order in which they were
/// appended until `arrange` sorts them. Names are unique. Not synchronised; but different entries may be set from
/// different threads while nothing else changes.
class FolderTable {
public:
    [[nodiscard]] std::size_t size() const { return rows_.size(); }
    [[nodiscard]] bool empty() const { return rows_.empty(); }
    /// Valid until the table changes.
    [[nodiscard]] std::string_view name(std::size_t index) const { return nameOf(rows_[index]); }
    [[nodiscard]] FolderEntry entry(std::size_t index) const;
    [[nodiscard]] bool isSelected(std::size_t index) const { return rows_[index].selected; }

    void append(std::string_view name, const FolderEntry&);
    void setEntry(std::size_t index, const FolderEntry&);
    void setSelected(std::size_t index, bool selected) { rows_[index].selected = selected; }

    [[nodiscard]] std::vector<std::string_view> names() const;
    /// Puts the rows in this order of their indices (TextServices::orderOfNames), which names each of them once. What
    /// follows needs a sorted table.
    void arrange(std::span<const std::uint32_t> order);

    /// The index of the first row that does not come before this name.
    [[nodiscard]] std::size_t lowerBound(std::string_view name, const TextServices&) const;
    [[nodiscard]] std::optional<std::size_t> find(std::string_view name, const TextServices&) const;

    /// Leaves out the items of other kinds.
    void keepOnly(const std::function<bool(EntryKind)>&);

    /// Brings items up to date; of several changes of one name the last one counts. Selection stays.
    [[nodiscard]] RowChanges apply(const std::vector<FolderChange>&, const TextServices&);

    /// Takes the place of this table's content, the selection kept by name. Told row by row as long as that takes no
    /// more than a few milliseconds, else as a reset.
    [[nodiscard]] RowChanges replaceWith(FolderTable newer, const TextServices&);

    /// Selects, by name, what is selected in the older table of the same folder.
    void takeSelectionFrom(const FolderTable& older);

private:
    struct Row {
        std::int64_t size;
        std::int64_t modificationTime;
        std::uint32_t nameOffset;
        std::uint16_t nameLength; // the kernel's directory entries are no longer
        EntryKind kind;
        bool inCloud : 1;
        bool selected : 1;
    };
    static_assert(sizeof(Row) == 24);
    struct Place;

    [[nodiscard]] std::string_view nameOf(const Row& row) const
    {
        return std::string_view(names_).substr(row.nameOffset, row.nameLength);
    }
    [[nodiscard]] Row makeRow(std::string_view name, const FolderEntry&);
    static void describe(Row&, const FolderEntry&);
    [[nodiscard]] std::vector<Place> placesOf(const std::vector<FolderChange>&, const TextServices&) const;
    void moveRows(const std::vector<Place>& moved);
    void mergeRows(const std::vector<Place>& moved);
    void compactNames();
    [[nodiscard]] RowChanges differenceTo(const FolderTable& newer, const TextServices&) const;
    std::string names_; // one after the other; also those of rows that are gone, until they are the larger half
    std::size_t deadBytes_ = 0;
    std::vector<Row> rows_;
};

} // namespace tessel
