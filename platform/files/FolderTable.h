#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

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

} // namespace tessel
