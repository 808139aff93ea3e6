#pragma once

#include "platform/cloud/StorageOffer.h"

#include <memory>
#include <optional>

namespace tessel {

class ViewController;

/// Leads the user through an offer of more storage: one page over what is on screen. Main thread only.
class UpgradeFlowManager {
public:
    explicit UpgradeFlowManager(std::optional<StorageOffer> offer) : offer_(std::move(offer)) {}

    /// Shows the page; nothing without an offer. The page goes on without this object.
    void beginFlow(ViewController& presentingController) const;

private:
    const std::optional<StorageOffer> offer_;
};

} // namespace tessel
