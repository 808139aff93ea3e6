#pragma once

#include "platform/base/NotificationCenter.h"
#include "platform/cloud/QuotaFetchOperation.h"
#include "platform/run/OperationQueue.h"
#include "platform/run/RepeatingTimer.h"
#include "platform/run/SerialQueue.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>

namespace tessel {

class QuotaFetcher;

class QuotaFetcherDelegate {
public:
    virtual ~QuotaFetcherDelegate() = default;

    /// A fetch has told how many bytes are free, on the main thread.
    virtual void quotaFetcherDidUpdateValue(QuotaFetcher&, std::uint64_t /*freeBytes*/) {}
    /// A fetch has told that there is no limit, or none that is known: what was told before is true no more.
    virtual void quotaFetcherFoundNoLimit(QuotaFetcher&) {}
};

/// Asks the cloud again and again how much room is left, while the program is active. Made as a shared pointer, used
/// and destroyed on the main thread; a fetch that is under way then is stopped, and tells nobody.
class QuotaFetcher : public std::enable_shared_from_this<QuotaFetcher> {
public:
    QuotaFetcher();
    ~QuotaFetcher() { stop_.request_stop(); }
    QuotaFetcher(const QuotaFetcher&) = delete;
    QuotaFetcher& operator=(const QuotaFetcher&) = delete;

    std::weak_ptr<QuotaFetcherDelegate> delegate;

    /// As the last successful fetch told; 0 before it.
    [[nodiscard]] std::uint64_t freeBytes() const { return freeBytes_; }

    /// Fetches at once, and then each time that the interval, in seconds, has passed, in place of any former one.
    void runWithInterval(double interval);
    void fetchNow();

private:
    void performFetch();
    void fetchUserQuota(QuotaFetchOperation::Completion);
    void notify(std::uint64_t freeBytes);
    void notifyOfNoLimit();
    void didBecomeActiveNotification();
    void willResignActiveNotification();

    std::uint64_t freeBytes_ = 0;
    std::atomic<bool> canFetch_ = true;
    NotificationCenter::Observation becomeActive_;
    NotificationCenter::Observation resignActive_;
    std::optional<RepeatingTimer> timer_;
    std::stop_source stop_;
    // Their tasks may use all the rest: they end first.
    OperationQueue quotaFetchingOperationsQueue_{"orvane.TesselDriveApp.quotafetches", QualityOfService::Utility};
    SerialQueue queue_{"orvane.TesselDriveApp.quotafetcher"};
};

} // namespace tessel
