#pragma once

#include "platform/base/URL.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace tessel {

struct CloudContainer;

/// Where some items may be moved: what the containers say of how deep folders may lie in them, and where the items are
/// now. It looks at the items once. Main thread only.
class MoveDestinations {
public:
    /// @param items all in one folder
    explicit MoveDestinations(std::vector<URL> items);
    MoveDestinations(const MoveDestinations&) = delete;
    MoveDestinations& operator=(const MoveDestinations&) = delete;

    [[nodiscard]] const std::vector<URL>& items() const { return items_; }
    /// Whether a folder is one of the items, or below one.
    [[nodiscard]] bool isMoved(const URL& folder) const;
    /// Whether the items may be moved into the folder, where they are not already.
    [[nodiscard]] bool accepts(const URL& folder) const;
    /// Whether one of the folders in the folder may take them.
    [[nodiscard]] bool leadsOn(const URL& folder) const;
    /// Whether the items may get into a library from where they are.
    [[nodiscard]] bool reaches(const CloudContainer& library) const;
    /// Whether a folder may lie in the folder.
    [[nodiscard]] static bool takesFolders(const URL& folder);

private:
    [[nodiscard]] bool mayGetInto(const CloudContainer&) const;
    [[nodiscard]] bool haveFolder() const;

    std::vector<URL> items_;
    std::unordered_set<std::string_view> paths_; ///< of the items
    mutable std::optional<bool> haveFolder_;     ///< one of them is a folder, and no package
};

} // namespace tessel
