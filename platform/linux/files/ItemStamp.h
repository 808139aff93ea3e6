#pragma once

#include "platform/base/URL.h"

#include <cstdint>
#include <optional>

namespace tessel {

/// Tells whether an item is still the very one it was, and unchanged. Renaming the item keeps its stamp.
struct ItemStamp {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint32_t mode = 0;    ///< kind and permissions
    std::uint64_t size = 0;    ///< bytes
    std::int64_t modified = 0; ///< nanoseconds since 1970

    [[nodiscard]] bool isSameItem(const ItemStamp& other) const
    {
        return device == other.device && inode == other.inode;
    }
    friend bool operator==(const ItemStamp&, const ItemStamp&) = default;
};

/// Links are not followed. @returns none with errno set when the item cannot be described
[[nodiscard]] std::optional<ItemStamp> stampOf(const URL&);
[[nodiscard]] std::optional<ItemStamp> stampOf(int descriptor);

} // namespace tessel
