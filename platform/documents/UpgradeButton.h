#pragma once

#include "platform/cloud/StorageOffer.h"
#include "platform/ui/Button.h"

#include <memory>
#include <optional>

namespace tessel {

/// Does what an offer's link says: has the user's browser open its page, unless it leads into the program's own upgrade
/// flow.
/// @returns whether it did
[[nodiscard]] bool performAction(const OfferLink&);

/// The button of an offer of more storage. Main thread only.
class UpgradeButton final : public Button {
public:
    [[nodiscard]] static std::shared_ptr<UpgradeButton> create();

    /// Whether the service wants a button shown for this offer.
    [[nodiscard]] static bool shouldShowForOffer(const StorageOffer& offer) { return offer.showsButton; }

    [[nodiscard]] const std::optional<StorageOffer>& offer() const { return offer_; }
    void setOffer(std::optional<StorageOffer> offer) { offer_ = std::move(offer); }
    /// The offer's; without an offer one that leads nowhere.
    [[nodiscard]] OfferLink link() const { return offer_ ? offer_->link : OfferLink(); }

private:
    std::optional<StorageOffer> offer_;
};

} // namespace tessel
