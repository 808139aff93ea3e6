#pragma once

#include "platform/linux/apps/DesktopFolders.h"
#include "platform/linux/apps/FileStamps.h"

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// Which applications were chosen for which types: the lists "mimeapps.list" of the user, the system and the
/// applications' folders (Association between MIME types and applications, freedesktop). Applications are named by the
/// identifiers of their desktop entries, without the suffix; they need not exist.
class MimeAssociations {
public:
    using Identifiers = std::vector<std::string>;
    using CanonicalType = std::function<std::string(std::string_view mimeType)>;

    /// Reads every list that there is.
    /// @param canonicalType makes the types in the lists those that are asked for
    /// @param stamps gets the places of all lists, there or not
    MimeAssociations(const DesktopFolders&, const CanonicalType& canonicalType, FileStamps& stamps);

    /// The chosen ones, the most important first.
    [[nodiscard]] Identifiers defaults(const std::string& mimeType) const;
    /// Those added to the ones that claim the type themselves, the most important first.
    [[nodiscard]] Identifiers added(const std::string& mimeType) const;
    /// Whether an application of this folder, by its place among the data folders, is not to count though it claims the
    /// type.
    [[nodiscard]] bool isRemoved(const std::string& identifier, const std::string& mimeType,
                                 std::size_t dataFolder) const;

private:
    using ByType = std::map<std::string, Identifiers, std::less<>>;

    /// What one folder's lists say. A desktop's own list only has defaults.
    struct Level {
        ByType defaults;
        ByType added;
        ByType removed;
    };

    void addLevel(const std::string& folder, const std::vector<std::string>& desktops, const CanonicalType&,
                  FileStamps&);
    [[nodiscard]] bool isRemovedAbove(const std::string& identifier, const std::string& mimeType,
                                      std::size_t level) const;

    std::vector<Level> levels_; ///< of the configuration folders, then of the data folders
    std::size_t firstDataLevel_ = 0;
};

} // namespace tessel
