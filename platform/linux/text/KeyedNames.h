#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// Names with byte keys, to be put in the order of the keys (memcmp), then of their own bytes.
///
/// Each name is represented by eight bytes of its key in one integer. Names are sorted by it, and only those that turn
/// out equal go on with the next eight: most comparisons read nothing else.
class KeyedNames {
public:
    /// @param names what the indices mean; outlives this object
    explicit KeyedNames(std::span<const std::string_view> names) : names_(names) {}

    void reserve(std::size_t count, std::size_t keyBytes);

    /// Adds names[index], whose key `append(std::string& keys)` appends to what is there. No key is another's
    /// beginning, but by zero bytes.
    template <typename Append>
    void add(std::uint32_t index, Append&& append)
    {
        entries_.push_back({0, index, static_cast<std::uint32_t>(ends_.size())});
        append(keys_);
        ends_.push_back(static_cast<std::uint32_t>(keys_.size()));
    }

    /// The indices of the first `count` names in their order. Uses the object up.
    [[nodiscard]] std::vector<std::uint32_t> takeFirst(std::size_t count) &&;

private:
    struct Entry {
        std::uint64_t chunk;
        std::uint32_t name;
        std::uint32_t key;
    };
    /// Entries that are equal up to byte 8 * depth of their keys; the first `wanted` of them are asked for.
    struct Run {
        std::span<Entry> entries;
        std::size_t wanted;
        std::size_t depth;
    };

    [[nodiscard]] std::string_view key(const Entry&) const;
    void loadChunks(const Run&);
    void orderByBytes(std::span<Entry>) const;
    void order(Run, std::vector<Run>& unfinished);

    std::span<const std::string_view> names_;
    std::vector<Entry> entries_;
    std::string keys_;
    std::vector<std::uint32_t> ends_;
};

} // namespace tessel
