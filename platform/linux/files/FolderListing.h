#pragma once

#include "platform/files/FolderTable.h"
#include "platform/linux/files/LinuxFolderReader.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// Whether a folder list is concerned with a file of this name: hidden files are not listed, but placeholders stand for
/// items that are.
[[nodiscard]] bool isListedName(std::string_view name);

/// Visits every entry of an open folder but "." and "..", in the file system's order, until `visit` answers false.
/// @param visit given the name and the type of file as `stat` has it in its mode, 0 where the file system keeps it
/// apart
/// @returns the errno that stopped it, or 0
[[nodiscard]] int visitEntries(int folder, const std::function<bool(std::string_view name, unsigned type)>& visit);
/// The same for who needs no more than names.
[[nodiscard]] int visitNames(int folder, const std::function<bool(std::string_view name)>& visit);

/// What is found under one name in an open folder, by one call; links are not followed.
/// @returns none with errno set when it cannot be described
[[nodiscard]] std::optional<FolderEntry> describeItem(int folder, std::string_view name, const TypeRegistry&);

/// A visible item that is in the cloud only.
struct PlaceholderItem {
    std::string name;
    FolderEntry entry;
};

/// The item behind a placeholder file; none when that is gone, damaged, or of a hidden item. An open folder's item of
/// the same name counts before it.
[[nodiscard]] std::optional<PlaceholderItem> readPlaceholderItem(const URL& placeholder, const FolderServices&);

/// One complete reading of an open folder, on the calling thread and, for large folders, one more.
class FolderListing {
public:
    /// @param abandoned when it becomes true, the reading of names ends soon with ECANCELED, and the rows soon without
    ///        being whole; the ordering of names, once begun, goes on to its end
    FolderListing(int folder, const URL& url, const FolderServices&, const std::atomic<bool>& abandoned);

    /// The first step: the names of all items.
    /// @returns the errno that stopped it, or 0
    [[nodiscard]] int readNames();

    /// The last step: the whole list, sorted and described. An item that vanished meanwhile or cannot be described is
    /// in it with the kind that its folder knows but without size; the going of one is told by the monitor.
    /// @param tellFirst given the first screenful as soon as it is known, when there is more than that
    [[nodiscard]] FolderTable allRows(const std::function<void(FolderTable)>& tellFirst);

    /// The names of the items behind placeholder files, by the names of these.
    [[nodiscard]] std::map<std::string, std::string> takePlaceholders() { return std::move(placeholders_); }

private:
    void appendFile(std::string_view name, EntryKind);
    void readPlaceholders(const std::vector<std::string>& files);
    [[nodiscard]] FolderTable firstRows(const std::vector<std::string_view>& names) const;
    void describeItems(std::size_t begin, std::size_t end);
    [[nodiscard]] FolderEntry describeFile(std::string_view name, EntryKind) const;

    const int folder_;
    const URL& url_;
    const FolderServices& services_;
    const std::atomic<bool>& abandoned_;
    FolderTable items_;            ///< those that are files first, then those in the cloud
    std::vector<EntryKind> kinds_; ///< of those that are files, as the folder has them
    std::map<std::string, std::string> placeholders_;
};

} // namespace tessel
