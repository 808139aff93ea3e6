#include "platform/documents/DetailsStore.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace tessel {

namespace {

bool isSame(const ItemDetails& left, const ItemDetails& right)
{
    return left.itemCount == right.itemCount && left.packageSize == right.packageSize && left.tags == right.tags &&
           left.isAliasFile == right.isAliasFile;
}

} // namespace

const ItemDetails* DetailsStore::find(std::string_view name) const
{
    const auto found = details_.find(std::string(name));
    return found != details_.end() ? &found->second : nullptr;
}

void DetailsStore::reset(std::size_t size)
{
    needs_.assign(size, Need::Fetch);
    details_.clear();
    outdated_.clear();
}

void DetailsStore::follow(const RowChanges& changes)
{
    if (changes.removed.empty() && changes.inserted.empty())
        return;
    std::vector<Need> needs;
    needs.reserve(needs_.size() + changes.inserted.size());
    auto removed = changes.removed.begin();
    auto inserted = changes.inserted.begin();
    const auto addInserted = [&] {
        for (; inserted != changes.inserted.end() && *inserted == needs.size(); ++inserted)
            needs.push_back(Need::Fetch);
    };
    for (std::size_t index = 0; index < needs_.size(); ++index) {
        addInserted();
        if (removed != changes.removed.end() && *removed == index)
            ++removed;
        else
            needs.push_back(needs_[index]);
    }
    addInserted();
    needs_ = std::move(needs);
}

void DetailsStore::makeStale(std::size_t index, std::string_view name)
{
    if (std::exchange(needs_[index], Need::Fetch) == Need::UnderWay)
        outdated_.emplace(name);
}

bool DetailsStore::set(std::size_t index, std::string_view name, const ItemDetails& details)
{
    const bool isOutdated = outdated_.erase(std::string(name)) > 0;
    if (needs_[index] == Need::UnderWay)
        needs_[index] = isOutdated ? Need::Fetch : Need::Nothing;
    const auto* const known = find(name);
    const ItemDetails none;
    if (isSame(known ? *known : none, details))
        return false;
    if (isSame(none, details))
        forget(name);
    else
        details_.insert_or_assign(std::string(name), details);
    return true;
}

std::vector<std::size_t> DetailsStore::take(std::size_t first, std::size_t end, std::size_t limit)
{
    std::vector<std::size_t> taken;
    end = std::min(end, needs_.size());
    for (auto index = next(Need::Fetch, first, end); index < end && taken.size() < limit;
         index = next(Need::Fetch, index + 1, end)) {
        needs_[index] = Need::UnderWay;
        taken.push_back(index);
    }
    return taken;
}

void DetailsStore::giveBack()
{
    std::replace(needs_.begin(), needs_.end(), Need::UnderWay, Need::Fetch);
}

/// The C library's search looks at 32 bytes at a time, so a walk over a long list costs microseconds.
std::size_t DetailsStore::next(Need need, std::size_t first, std::size_t end) const
{
    if (first >= end)
        return end;
    const auto* const found = std::memchr(needs_.data() + first, static_cast<int>(need), end - first);
    return found ? static_cast<std::size_t>(static_cast<const Need*>(found) - needs_.data()) : end;
}

} // namespace tessel
