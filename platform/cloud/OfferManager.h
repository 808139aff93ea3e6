#pragma once

#include "platform/cloud/StorageOffer.h"

#include <optional>

namespace tessel {

/// Posted on the main thread after the current offer has changed, come or gone.
inline constexpr const char* kCurrentOfferChangedNotification = "StorageOfferCurrentOfferChanged";

/// Knows what the cloud offers the user who is short of room. Main thread only.
class OfferManager {
public:
    virtual ~OfferManager() = default;

    /// Fetches the offer unless that was done before; from then on it is kept true.
    /// @returns whether a fetch was started. An offer that it finds is told by the notification; without one, nothing
    ///          is.
    virtual bool fetchOfferIfNeeded() = 0;

    /// None before the first fetch, and while nothing is offered.
    [[nodiscard]] virtual const std::optional<StorageOffer>& currentOffer() const = 0;
};

} // namespace tessel
