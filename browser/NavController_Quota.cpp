#include "app/common/Log.h"
#include "browser/NavController.h"
#include "browser/StatusBar.h"
#include "platform/cloud/OfferManager.h"
#include "platform/cloud/QuotaService.h"
#include "platform/documents/UpgradeFlowManager.h"
#include "platform/run/Clock.h"
#include "platform/run/MainQueue.h"

namespace tessel {

namespace {

constexpr double kQuotaInterval = 300.0;                  // seconds
constexpr double kFetchesAfterOffer[] = {1.0, 5.0, 20.0}; // seconds; what was bought counts by and by

OfferManager& offerManager()
{
    return platform::installed().quota.offers();
}

std::string levelOf(const std::optional<StorageOffer>& offer)
{
    return offer ? std::to_string(offer->level) : "not set";
}

} // namespace

void NavController::startQuotaFetcher()
{
    quotaFetcher = std::make_shared<QuotaFetcher>();
    quotaFetcher->delegate = std::static_pointer_cast<NavController>(shared_from_this());
    quotaFetcher->runWithInterval(kQuotaInterval);
}

void NavController::followOffers()
{
    TSD_FUNCTION("-[NavController viewDidLoad]");
    offerChanged_ = platform::installed().notifications.observe(kCurrentOfferChangedNotification,
                                                                [this] { offerChangedNotification(); });
    if (!offerManager().fetchOfferIfNeeded())
        upgradeOffer = offerManager().currentOffer();
    TSD_INFO("Quota Offer level is %{public}@", levelOf(upgradeOffer));
}

void NavController::quotaFetcherDidUpdateValue(QuotaFetcher&, std::uint64_t freeBytes)
{
    TSD_FUNCTION("-[NavController quotaFetcher:didUpdateValue:]");
    quotaBytes = freeBytes;
    lastQuotaFetch = platform::installed().clock.now();
    TSD_DEBUG("updated quota at %{public}@: %{public}@ bytes avail", *lastQuotaFetch, quotaBytes);
    updateStatusUI(nullptr);
}

void NavController::quotaFetcherFoundNoLimit(QuotaFetcher&)
{
    lastQuotaFetch.reset();
    updateStatusUI(nullptr);
}

void NavController::offerChangedNotification()
{
    TSD_FUNCTION("-[NavController offerChangedNotification:]");
    upgradeOffer = offerManager().currentOffer();
    TSD_INFO("Quota Offer Changed, offer level is %{public}@", levelOf(upgradeOffer));
    updateStatusUI(nullptr);
    for (const auto& controller : viewControllers())
        if (const auto list = std::dynamic_pointer_cast<DocumentListController>(controller))
            if (const auto bar = statusBar(*list))
                bar->showUpgradeOffer(upgradeOffer);
    for (const auto delay : kFetchesAfterOffer)
        DispatchQueue::main().after(delay, [self = std::static_pointer_cast<NavController>(shared_from_this())] {
            if (self->quotaFetcher)
                self->quotaFetcher->fetchNow();
        });
}

void NavController::upgradeStorageButtonPressed()
{
    TSD_FUNCTION("-[NavController upgradeStorageButtonPressed]");
    upgradeFlowMgr = std::make_shared<UpgradeFlowManager>(upgradeOffer);
    if (!upgradeOffer) {
        TSD_INFO("UpgradeStorage: No upgrade offer");
        return;
    }
    TSD_INFO("UpgradeStorage: presenting view controller");
    if (const auto top = topViewController())
        upgradeFlowMgr->beginFlow(*top);
}

} // namespace tessel
