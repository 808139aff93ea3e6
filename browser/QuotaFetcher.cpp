#include "browser/QuotaFetcher.h"

#include "app/common/Log.h"
#include "platform/cloud/CloudService.h"
#include "platform/run/MainQueue.h"
#include "platform/ui/Application.h"

namespace tessel {

QuotaFetcher::QuotaFetcher()
{
    auto& notifications = platform::installed().notifications;
    becomeActive_ = notifications.observe(kDidBecomeActiveNotification, [this] { didBecomeActiveNotification(); });
    resignActive_ = notifications.observe(kWillResignActiveNotification, [this] { willResignActiveNotification(); });
}

void QuotaFetcher::runWithInterval(double interval)
{
    timer_.emplace(queue_, interval, [this] { performFetch(); });
}

void QuotaFetcher::fetchNow()
{
    queue_.async([this, expectation = DispatchQueue::main().expectation()] { performFetch(); });
}

void QuotaFetcher::performFetch()
{
    TSD_FUNCTION("-[QuotaFetcher performFetch]");
    if (!canFetch_) {
        TSD_DEBUG("Not fetching quota: backgrounded.");
        return;
    }
    fetchUserQuota([weak = weak_from_this(), expectation = DispatchQueue::main().expectation()](const auto& result) {
        TSD_FUNCTION("-[QuotaFetcher performFetch]_block_invoke");
        if (!result) {
            TSD_WARNING("can't update quota: %{public}@", result.error());
            return;
        }
        DispatchQueue::main().async([weak, expectation, freeBytes = *result] {
            const auto self = weak.lock();
            if (self && freeBytes)
                self->notify(static_cast<std::uint64_t>(*freeBytes));
            else if (self)
                self->notifyOfNoLimit();
        });
    });
}

void QuotaFetcher::fetchUserQuota(QuotaFetchOperation::Completion completion)
{
    TSD_FUNCTION("-[QuotaFetcher fetchUserQuotaWithCompletion:]");
    if (!platform::installed().cloud.identityToken()) {
        TSD_INFO("Not fetching quota. Ubiquity is not enabled");
        return;
    }
    quotaFetchingOperationsQueue_.addOperation(QuotaFetchOperation(std::move(completion), stop_.get_token()));
}

void QuotaFetcher::notify(std::uint64_t freeBytes)
{
    freeBytes_ = freeBytes;
    if (const auto told = delegate.lock())
        told->quotaFetcherDidUpdateValue(*this, freeBytes_);
}

void QuotaFetcher::notifyOfNoLimit()
{
    if (const auto told = delegate.lock())
        told->quotaFetcherFoundNoLimit(*this);
}

void QuotaFetcher::didBecomeActiveNotification()
{
    TSD_FUNCTION("-[QuotaFetcher didBecomeActiveNotification:]");
    TSD_INFO("(quota) Did become active");
    canFetch_ = true;
}

void QuotaFetcher::willResignActiveNotification()
{
    TSD_FUNCTION("-[QuotaFetcher willResignActiveNotification:]");
    TSD_INFO("(quota) Will resign active");
    canFetch_ = false;
}

} // namespace tessel
