#pragma once

#include "platform/base/NotificationCenter.h"
#include "platform/documents/DocumentListController.h"
#include "platform/documents/FolderRows.h"
#include "platform/files/FolderReader.h"
#include "platform/run/MainQueue.h"

namespace tessel {

/// The folder's rows and where they come from.
struct DocumentListController::Listing {
    FolderRows rows;
    ListState state = ListState::Loading;
    std::optional<Error> failure;
    std::unique_ptr<FolderReading> reading; ///< none before the list was looked at
    MainQueue::DelayedTask retry;           ///< of a failed list
    std::size_t firstVisible = 0;
    std::size_t visibleCount = 0;
    std::optional<URL> startItem = {};    ///< the list is to begin with it
    MainQueue::DelayedTask scrolled = {}; ///< tells that other rows are seen
    NotificationCenter::Observation activation;
    NotificationCenter::Observation libraries;
    NotificationCenter::Observation tagColors; ///< once the delegate was asked for one
};

} // namespace tessel
