#pragma once

#include "platform/documents/DetailsStore.h"
#include "platform/documents/ListRow.h"
#include "platform/files/FolderReader.h"
#include "platform/files/FolderTable.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tessel {

class TextServices;

/// A row of what the file system says of an item.
[[nodiscard]] ListRow listRow(const URL&, const FolderEntry&, const TextServices&);

/// Adds what was found out about the item of a row.
void addDetails(ListRow&, const ItemDetails&);

/// An app library among the rows of the drive's top folder.
struct LibraryRow {
    URL url;
    std::string title;
    std::size_t itemsBefore = 0; ///< how many of the folder's items come before it
    bool selected = false;
};

/// The rows of a folder list: the folder's items and, sorted among them by title, libraries.
class FolderRows {
public:
    FolderRows(const URL& folder, const TextServices&);

    /// The libraries that are there now, in any order.
    /// @param isComplete whether the folder's items are all known
    /// @returns the rows that came and went
    RowChanges setLibraries(std::vector<LibraryRow>, bool isComplete);

    [[nodiscard]] std::size_t size() const { return table_.size() + shownLibraries_; }
    [[nodiscard]] URL url(std::size_t index) const;
    [[nodiscard]] ListRow row(std::size_t index) const;
    [[nodiscard]] std::vector<URL> urls() const;
    /// The row of an item or library.
    [[nodiscard]] std::optional<std::size_t> find(const URL&) const;
    [[nodiscard]] std::vector<ListRow> libraryRows() const;
    /// The items that are known to have tags.
    [[nodiscard]] std::vector<std::size_t> rowsWithTags() const;

    /// The first rows of a list that is not complete: what comes after them stays unknown, libraries as well.
    void begin(FolderTable);
    /// The whole list in place of what was known.
    void complete(FolderTable);
    void clear();
    [[nodiscard]] RowChanges apply(const std::vector<FolderChange>&);
    [[nodiscard]] RowChanges replaceWith(FolderTable);

    [[nodiscard]] SelectedItems selectedItems() const;
    [[nodiscard]] std::vector<URL> selectedURLs() const;
    [[nodiscard]] bool isSelected(std::size_t index) const;
    [[nodiscard]] bool isSelected(const URL&) const;
    void setSelected(std::size_t index, bool selected);
    /// Selects exactly these, as far as they are in the list.
    /// @returns the rows that changed
    [[nodiscard]] RowChanges select(const std::vector<URL>&);
    /// Selects all that are known and, of a list that is not complete, what `complete` adds.
    /// @returns the rows that changed
    [[nodiscard]] RowChanges selectAll();

    /// The answer for an item.
    /// @returns the row that now shows something else
    [[nodiscard]] std::optional<std::size_t> setDetails(const URL&, const ItemDetails&);
    /// Those of these rows whose details are not known, or may have changed, and are not under way; at most `limit`,
    /// and no more than are needed are looked at. From now on they are under way.
    [[nodiscard]] std::vector<URL> takeWithoutDetails(std::size_t first, std::size_t count, std::size_t limit);
    /// The details that are under way do not come any more.
    void giveBackDetails();
    /// Lets all details be fetched again; they are shown until then.
    void makeDetailsStale();

private:
    /// What a row stands for: a library, or the item of this index.
    struct Place {
        const LibraryRow* library;
        std::size_t item;
    };

    [[nodiscard]] Place place(std::size_t index) const;
    [[nodiscard]] ListRow libraryRow(const LibraryRow&) const;
    [[nodiscard]] ListRow itemRow(std::size_t item) const;
    void markStale(const std::vector<FolderChange>&);
    [[nodiscard]] std::size_t librariesBefore(std::size_t row) const;
    [[nodiscard]] std::optional<std::size_t> findItem(const URL&) const;
    void selectNewcomers(FolderTable&);
    void placeLibraries(bool isComplete);
    [[nodiscard]] std::vector<std::size_t> rowsOfLibraries(const std::vector<std::size_t>& libraries) const;
    void moveToRows(std::vector<std::size_t>& items) const;
    template <typename Change>
    RowChanges changeItems(const Change&);

    const URL folder_;
    const TextServices& text_;
    FolderTable table_;
    std::vector<LibraryRow> libraries_; ///< sorted by title
    std::size_t shownLibraries_ = 0;
    bool isComplete_ = false;
    bool selectsWhatComes_ = false;
    DetailsStore details_;        ///< of items
    DetailsStore libraryDetails_; ///< of libraries, by path
};

} // namespace tessel
