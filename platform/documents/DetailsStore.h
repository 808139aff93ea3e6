#pragma once

#include "platform/files/FolderReader.h"
#include "platform/files/FolderTable.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace tessel {

/// The details of a list's items, by name, and which of them are still to be fetched, by index: one byte for each item,
/// and more only for those of which there is something to say. Indices are kept in step with the list by its owner.
class DetailsStore {
public:
    /// None when nothing is known or there is nothing to say. Valid until the store changes.
    [[nodiscard]] const ItemDetails* find(std::string_view name) const;

    /// Begins anew with a list of this length.
    void reset(std::size_t size);
    /// The first items are as before, the rest is new.
    void resize(std::size_t size) { needs_.resize(size, Need::Fetch); }
    void follow(const RowChanges&);

    /// Lets details be fetched again; they are shown until then. An answer that is on its way counts for nothing.
    void makeStale(std::size_t index, std::string_view name);
    template <typename NameOf>
    void makeAllStale(const NameOf& nameOf);
    void forget(std::string_view name) { details_.erase(std::string(name)); }

    /// The answer for an item.
    /// @returns whether it says anything new
    bool set(std::size_t index, std::string_view name, const ItemDetails&);

    /// The first items from `first` to before `end` that need to be fetched, at most `limit`; from now on they are
    /// under way.
    [[nodiscard]] std::vector<std::size_t> take(std::size_t first, std::size_t end, std::size_t limit);
    /// What is under way does not come any more.
    void giveBack();

private:
    enum class Need : std::uint8_t { Fetch, UnderWay, Nothing };

    [[nodiscard]] std::size_t next(Need, std::size_t first, std::size_t end) const;

    std::vector<Need> needs_;
    std::unordered_map<std::string, ItemDetails> details_;
    std::unordered_set<std::string> outdated_; ///< the next answer for these may have been read before they changed
};

template <typename NameOf>
void DetailsStore::makeAllStale(const NameOf& nameOf)
{
    for (auto index = next(Need::UnderWay, 0, needs_.size()); index < needs_.size();
         index = next(Need::UnderWay, index + 1, needs_.size()))
        outdated_.emplace(nameOf(index));
    needs_.assign(needs_.size(), Need::Fetch);
}

} // namespace tessel
