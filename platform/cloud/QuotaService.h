#pragma once

#include "platform/base/Error.h"

#include <cstdint>
#include <optional>

namespace tessel {

/// How much room the signed-in account has in the cloud.
class QuotaService {
public:
    virtual ~QuotaService() = default;

    /// Fetches what is free, in bytes, of the account's room. Takes as long as the service takes: called on a worker.
    /// @returns none where there is no limit, or none that is known
    virtual Result<std::optional<std::uint64_t>> freeBytes() = 0;
};

} // namespace tessel
