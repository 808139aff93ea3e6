#pragma once

#include "platform/base/URL.h"
#include "platform/documents/DocumentListController.h"

#include <optional>

namespace tessel {

/// Owns the showing of one document.
class PreviewItemManager {
public:
    PreviewItemManager() = delete;

    /// The folder lists from the drive's top folder down to a folder, or to the folder that holds a document.
    /// @returns none, logged, when nothing is there or it lies outside the drive.
    [[nodiscard]] static std::optional<DocumentListController::Hierarchy> dlcStackForURL(const URL&);
};

} // namespace tessel
