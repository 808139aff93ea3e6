#pragma once

#include "browser/DocumentListControllerStatusBar.h"

#include <memory>
#include <optional>

namespace tessel {

class DocumentListController;

// The status bar of a folder list, which lives as long as the list.

/// Null until one was made.
[[nodiscard]] std::shared_ptr<DocumentListControllerStatusBar> statusBar(const DocumentListController&);
void setStatusBar(DocumentListController&, std::shared_ptr<DocumentListControllerStatusBar>);

/// Makes a new one for the list; it is not shown yet.
void createStatusBar(DocumentListController&, const std::optional<StorageOffer>&,
                     const std::shared_ptr<DocumentListControllerStatusBarDelegate>& buttonPressDelegate);

/// Makes the status bar, which there must be, what the list's toolbar shows.
void displayStatusBar(DocumentListController&);

} // namespace tessel
