#pragma once

#include "platform/base/URL.h"
#include "platform/cloud/QuotaService.h"
#include "platform/linux/cloud/DriveUsage.h"

namespace tessel {

class CloudService;

/// The room of an account whose drive lies in folders of this device: what their file system has left or, where the
/// user gives the account a size, what the drive leaves of that.
class LocalQuota final : public QuotaService {
public:
    /// The services outlive this.
    LocalQuota(URL home, const CloudService& cloud, OfferManager& offers, const Clock& clock)
        : home_(std::move(home)), cloud_(cloud), offers_(offers), usage_(clock)
    {
    }

    Result<std::optional<std::uint64_t>> freeBytes(const std::stop_token& stop) override;
    [[nodiscard]] OfferManager& offers() override { return offers_; }

private:
    [[nodiscard]] URL driveFolder() const;
    [[nodiscard]] std::vector<URL> folders() const;

    const URL home_;
    const CloudService& cloud_;
    OfferManager& offers_;
    DriveUsage usage_;
};

} // namespace tessel
