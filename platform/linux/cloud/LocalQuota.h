#pragma once

#include "platform/base/URL.h"
#include "platform/cloud/QuotaService.h"

namespace tessel {

class CloudService;

/// The room of an account whose drive lies in folders of this device: that of their file system.
class LocalQuota final : public QuotaService {
public:
    /// @param cloud outlives this
    LocalQuota(URL home, const CloudService& cloud) : home_(std::move(home)), cloud_(cloud) {}

    Result<std::optional<std::uint64_t>> freeBytes() override;

private:
    const URL home_;
    const CloudService& cloud_;
};

} // namespace tessel
