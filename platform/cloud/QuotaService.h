#pragma once

#include "platform/base/Error.h"

#include <cstdint>
#include <optional>
#include <stop_token>

namespace tessel {

class OfferManager;

/// How much room the signed-in account has in the cloud, and what is offered when that runs low.
class QuotaService {
public:
    virtual ~QuotaService() = default;

    /// Fetches what is free, in bytes, of the account's room. Takes as long as the service takes: called on a worker.
    /// @param stop ends it early; the answer then means nothing
    /// @returns none where there is no limit, or none that is known
    virtual Result<std::optional<std::uint64_t>> freeBytes(const std::stop_token& stop) = 0;

    [[nodiscard]] virtual OfferManager& offers() = 0;
};

} // namespace tessel
