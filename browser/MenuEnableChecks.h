#pragma once

#include "platform/base/URL.h"

#include <cstdint>
#include <vector>

namespace tessel {

class DocumentListController;

/// What may be done with the selected items of a list, by the rules of the containers that they are in: what each lets
/// folders be, the Desktop and Documents folders, which stay where they are, and the libraries' own top folders. Main
/// thread only.
class MenuEnableChecks {
public:
    MenuEnableChecks() = delete;

    /// Asked after every change of a selection, of any size: what a selection holds is counted, not looked at.
    [[nodiscard]] static bool canShowMoveForSelectedItems(const DocumentListController&);
    [[nodiscard]] static bool canShowDeleteForSelectedItems(const DocumentListController&);
    /// Whether a folder may be made in the list's folder, whatever is selected.
    [[nodiscard]] static bool canEnableNewFolderForSelectedItems(const DocumentListController&);

    /// How many of them are the top folders of libraries.
    [[nodiscard]] static std::uint64_t numContainersInURLArray(const std::vector<URL>&);
    /// 1 when there is a folder among them that is no package, else 0.
    [[nodiscard]] static std::uint64_t numFoldersInURLArray(const std::vector<URL>&);
    /// Whether the Desktop or the Documents folder is among them.
    [[nodiscard]] static bool isDesktopOrDocumentsInURLArray(const std::vector<URL>&);

    /// Whether the list's container lets folders be nested without limit.
    [[nodiscard]] static bool containerSupportsAnyDepth(const DocumentListController&);
    /// Whether the container that a folder is in has a folder at its top level; also answered so when that cannot be
    /// known.
    [[nodiscard]] static bool containerHasSubfolders(const URL& folder);
};

} // namespace tessel
