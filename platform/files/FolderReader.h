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

/// Called on the main queue, in this order: at most one `firstRows`, then one `complete` or `failed`; after `complete`
/// any number of `changed`; at the end at most one `removed`, after which nothing follows. `details` may come between.
struct FolderReadingClient {
    /// The beginning of the list in its final order, for the screen, while the rest is still being read.
    std::function<void(FolderTable)> firstRows;
    std::function<void(FolderTable)> complete;
    /// What other programs changed, newest state only; names that came, went or are described anew.
    std::function<void(std::vector<FolderChange>)> changed;
    std::function<void(const Error&)> failed;
    /// The folder itself was removed, or it or a folder above it was moved away.
    std::function<void()> removed;
    std::function<void(const std::string& name, const ItemDetails&)> details;
};

/// One folder being read and then watched. Destroying it, on the main thread, ends all callbacks at once.
class FolderReading {
public:
    virtual ~FolderReading() = default;

    /// Fetches the details of these items, in this order and before those asked for earlier.
    virtual void fetchDetails(std::vector<std::string> names) = 0;
    /// Whether details that were asked for are still to come.
    [[nodiscard]] virtual bool isFetchingDetails() const = 0;
};

struct SearchHit {
    URL url;
    FolderEntry entry;
};

/// Called on the main queue: hits in batches, as they are found, then `finished` once.
struct SearchClient {
    std::function<void(std::vector<SearchHit>)> found;
    std::function<void()> finished;
};

/// Reads folders and keeps them true, without ever blocking the main queue.
class FolderReader {
public:
    virtual ~FolderReader() = default;

    [[nodiscard]] virtual std::unique_ptr<FolderReading> read(const URL& folder, FolderReadingClient) = 0;

    /// Finds the visible items below a folder, at any depth, links not followed, whose names contain the query when
    /// both are search-folded. Destroying the answer ends the search.
    [[nodiscard]] virtual std::unique_ptr<FolderReading> search(const URL& folder, std::string query, SearchClient) = 0;
};

} // namespace tessel
