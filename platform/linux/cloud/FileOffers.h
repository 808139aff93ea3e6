#pragma once

#include "platform/cloud/OfferManager.h"
#include "platform/linux/files/FolderMonitor.h"
#include "platform/run/MainQueue.h"
#include "platform/run/OperationQueue.h"

#include "platform/base/Error.h"
#include "platform/base/URL.h"

#include <memory>
#include <optional>

namespace tessel {

class NotificationCenter;

/// The file of a home in which the current offer stands:
///
///     {"currentOffer": {"level": 2, "title": "…", "message": "…", "showsButton": true,
///                       "link": {"action": 1, "url": "https://…"}}}
///
/// What is missing of an offer is empty.
[[nodiscard]] URL offersFileIn(const URL& home);

/// The offers in one file, which whoever speaks to the cloud writes, in place or by replacing it. It is read, on a
/// worker, with the first fetch, and again when it has changed and nobody has written to it for a moment. What is
/// damaged, longer than 64 KiB or cannot be read is logged, and leaves the current offer as it is; a file that is gone
/// leaves none.
class FileOffers final : public OfferManager {
public:
    /// The services outlive the offers.
    FileOffers(URL file, MainQueue&, NotificationCenter&, UnifiedLog&);
    ~FileOffers() override;

    bool fetchOfferIfNeeded() override;
    [[nodiscard]] const std::optional<StorageOffer>& currentOffer() const override { return current_; }

private:
    class Listener;

    void watch();
    void fetchSoon();
    void fetch();
    void take(const Result<std::optional<StorageOffer>>&);

    const URL file_;
    MainQueue& mainQueue_;
    NotificationCenter& notifications_;
    UnifiedLog& log_;
    std::optional<StorageOffer> current_;
    std::shared_ptr<Listener> listener_; ///< none before the first fetch
    std::unique_ptr<FolderMonitor> monitor_;
    MainQueue::DelayedTask fetching_;
    OperationQueue reading_{"orvane.TesselDriveApp.offers", QualityOfService::Utility};
};

} // namespace tessel
