#include "platform/linux/text/KeyedNames.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <tuple>

namespace tessel {

namespace {

std::uint64_t chunkAt(std::string_view key, std::size_t offset)
{
    std::uint64_t bytes = 0;
    if (offset < key.size())
        std::memcpy(&bytes, key.data() + offset, std::min(sizeof bytes, key.size() - offset));
    if constexpr (std::endian::native == std::endian::little)
        bytes = __builtin_bswap64(bytes);
    return bytes;
}

/// Moves what belongs to the first `wanted`, and all that equals the last of these, to the front.
template <typename Entry>
std::span<Entry> narrowed(std::span<Entry> entries, std::size_t wanted)
{
    if (wanted >= entries.size())
        return entries;
    const auto byChunk = [](const Entry& left, const Entry& right) { return left.chunk < right.chunk; };
    const auto last = entries.begin() + static_cast<std::ptrdiff_t>(wanted) - 1;
    std::nth_element(entries.begin(), last, entries.end(), byChunk);
    const auto end =
        std::partition(last + 1, entries.end(), [&](const Entry& entry) { return entry.chunk == last->chunk; });
    return entries.first(static_cast<std::size_t>(end - entries.begin()));
}

} // namespace

void KeyedNames::reserve(std::size_t count, std::size_t keyBytes)
{
    entries_.reserve(count);
    ends_.reserve(count);
    keys_.reserve(keyBytes);
}

std::vector<std::uint32_t> KeyedNames::takeFirst(std::size_t count) &&
{
    count = std::min(count, entries_.size());
    std::vector<Run> unfinished;
    if (count > 0)
        unfinished.push_back({entries_, count, 0});
    while (!unfinished.empty()) {
        const auto run = unfinished.back();
        unfinished.pop_back();
        order(run, unfinished);
    }
    std::vector<std::uint32_t> indices(count);
    std::transform(entries_.begin(), entries_.begin() + static_cast<std::ptrdiff_t>(count), indices.begin(),
                   [](const Entry& entry) { return entry.name; });
    return indices;
}

void KeyedNames::order(Run run, std::vector<Run>& unfinished)
{
    if (key(run.entries.front()).size() <= run.depth * sizeof(Entry::chunk))
        return orderByBytes(run.entries);
    loadChunks(run);
    const auto entries = narrowed(run.entries, run.wanted);
    std::sort(entries.begin(), entries.end(),
              [](const Entry& left, const Entry& right) { return left.chunk < right.chunk; });

    for (std::size_t start = 0; start < run.wanted;) {
        auto end = start + 1;
        while (end < entries.size() && entries[end].chunk == entries[start].chunk)
            ++end;
        const auto size = end - start;
        if (size > 1)
            unfinished.push_back({entries.subspan(start, size), std::min(size, run.wanted - start), run.depth + 1});
        start = end;
    }
}

void KeyedNames::loadChunks(const Run& run)
{
    for (auto& entry : run.entries)
        entry.chunk = chunkAt(key(entry), run.depth * sizeof entry.chunk);
}

void KeyedNames::orderByBytes(std::span<Entry> entries) const
{
    std::sort(entries.begin(), entries.end(), [&](const Entry& left, const Entry& right) {
        return std::tie(names_[left.name], left.name) < std::tie(names_[right.name], right.name);
    });
}

std::string_view KeyedNames::key(const Entry& entry) const
{
    const auto begin = entry.key == 0 ? 0 : ends_[entry.key - 1];
    return std::string_view(keys_).substr(begin, ends_[entry.key] - begin);
}

} // namespace tessel
