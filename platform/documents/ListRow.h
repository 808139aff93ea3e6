#pragma once

#include "platform/base/Date.h"
#include "platform/base/URL.h"
#include "platform/ui/Color.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tessel {

enum class RowKind : std::uint8_t {
    File,
    Folder,
    Package, ///< a folder shown as one document
    Link,    ///< a symbolic link or an alias file
    Library, ///< the top folder of another application's documents
};

struct ListTag {
    std::string name;           ///< as it is stored
    std::optional<Color> color; ///< none for a tag that nobody has given one

    friend bool operator==(const ListTag&, const ListTag&) = default;
};

/// One row of a folder list as a shell shows it: a copy of what is known at this moment. What is not known yet is
/// absent and follows by a row change.
struct ListRow {
    RowKind kind = RowKind::File;
    std::string title; ///< fit for display (TextServices::displayName)
    URL url;
    std::optional<std::uint64_t> size;      ///< bytes; of files and packages
    std::optional<std::uint32_t> itemCount; ///< visible items; of folders and libraries
    std::optional<Date> modified;
    std::vector<ListTag> tags;
    bool inCloud = false;                        ///< its content is not on the device
    std::optional<double> downloadProgress = {}; ///< from 0 to 1, while its content is coming
    bool selected = false;
    bool enabled = true; ///< whether pressing it does anything
};

/// How many items of a list are selected, and of what kinds.
struct SelectedItems {
    std::size_t count = 0; ///< of all kinds
    std::size_t libraries = 0;
    std::size_t folders = 0; ///< no packages
};

} // namespace tessel
