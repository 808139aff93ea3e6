#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"
#include "platform/files/FolderTable.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessel {

/// What is told of one item only when it is looked at, because it costs a call or more each.
struct ItemDetails {
    std::optional<std::uint32_t> itemCount;   ///< visible items of a folder
    std::optional<std::uint64_t> packageSize; ///< bytes
    std::vector<std::string> tags;
    bool isAliasFile = false;
};

/// Called on the main queue, in this order: at most one `firstRows`, then either `failed`, after which nothing follows,
/// or one `complete`; after it any number of `changed`, `replaced` and `failed`; at the end at most one `removed`,
/// after which nothing follows. `details` may come between. Tables are sorted.
///
/// A `failed` after `complete` says that the folder is there but cannot be read any more; the next one to come is
/// `replaced`, when it can be read again, or `removed`.
struct FolderReadingClient {
    /// The beginning of the list in its final order, for the screen, while the rest is still being read.
    std::function<void(FolderTable)> firstRows;
    /// Only ever the whole folder: an error half-way is `failed`.
    std::function<void(FolderTable)> complete;
    /// What other programs changed, newest state only; names that came, went or are described anew. At most a few
    /// hundred at once.
    std::function<void(std::vector<FolderChange>)> changed;
    /// The folder was read anew, because too much had changed at once to tell it name by name.
    std::function<void(FolderTable)> replaced;
    std::function<void(const Error&)> failed;
    /// The folder itself was removed, or it or a folder above it was moved away.
    std::function<void()> removed;
    std::function<void(const URL& item, const ItemDetails&)> details;
};

/// One folder being read and then watched. Destroying it, on the main thread, ends all callbacks at once and waits for
/// nothing.
class FolderReading {
public:
    virtual ~FolderReading() = default;

    /// Fetches the details of these items, in this order, in place of those that were asked for earlier and have not
    /// come yet.
    virtual void fetchDetails(std::vector<URL> items) = 0;
    /// Whether details that were asked for are still to come.
    [[nodiscard]] virtual bool isFetchingDetails() const = 0;
    /// Whether something has happened to the folder that is still to be told.
    [[nodiscard]] virtual bool isCatchingUp() const = 0;
};

struct SearchHit {
    URL url;
    FolderEntry entry;
    ItemDetails details;
};

/// Called on the main queue: hits in batches, as they are found, then `finished` once.
struct SearchClient {
    std::function<void(std::vector<SearchHit>)> found;
    std::function<void()> finished;
};

/// A search that goes on until it is destroyed, on the main thread, or has finished.
class FolderSearch {
public:
    virtual ~FolderSearch() = default;
};

/// Reads folders and keeps them true, without ever blocking the main queue.
class FolderReader {
public:
    virtual ~FolderReader() = default;

    [[nodiscard]] virtual std::unique_ptr<FolderReading> read(const URL& folder, FolderReadingClient) = 0;

    /// Finds the visible items below some folders, at any depth, links not followed, whose names contain the query when
    /// both are search-folded. What is in packages is not looked at.
    [[nodiscard]] virtual std::unique_ptr<FolderSearch> search(std::vector<URL> folders, std::string query,
                                                               SearchClient) = 0;
};

} // namespace tessel
