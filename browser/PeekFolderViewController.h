#pragma once

#include "platform/documents/DocumentListController.h"

namespace tessel {

/// The list of a folder, shown as its peek: without a search field.
class PeekFolderViewController final : public DocumentListController {
public:
    explicit PeekFolderViewController(const URL& folder) : DocumentListController(folder) {}

    [[nodiscard]] std::string className() const override { return "PeekFolderViewController"; }
    [[nodiscard]] bool shouldShowSearch() const override { return false; }
};

} // namespace tessel
