#include "browser/QuotaFetcher.h"

#include "app/entry/AppDelegate.h"
#include "browser/NavController.h"
#include "platform/base/Platform.h"
#include "platform/cloud/CloudService.h"
#include "platform/cloud/OfferManager.h"
#include "platform/cloud/QuotaService.h"
#include "platform/documents/UpgradeViewController.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <condition_variable>

namespace tessel {
namespace {

using testing::Contains;
using testing::EndsWith;
using testing::Not;

/// A quota service that notes when it is asked, and an offer that a test makes.
class ToldQuota final : public QuotaService, public OfferManager {
public:
    explicit ToldQuota(const Clock& clock) : clock_(clock) {}

    Result<std::optional<std::uint64_t>> freeBytes(const std::stop_token& stop) override
    {
        std::unique_lock lock(mutex_);
        askedAt_.push_back(static_cast<int>(clock_.uptime() / std::chrono::seconds(1)));
        DispatchQueue::main().async([] {}); // wakes a test that waits for it
        changed_.wait(lock, stop, [this] { return !isHeld_; });
        return answer_;
    }
    [[nodiscard]] OfferManager& offers() override { return *this; }
    bool fetchOfferIfNeeded() override { return false; }
    [[nodiscard]] const std::optional<StorageOffer>& currentOffer() const override { return offer; }

    void answer(Result<std::optional<std::uint64_t>> answer, bool isHeld = false)
    {
        const std::lock_guard lock(mutex_);
        answer_ = std::move(answer);
        isHeld_ = isHeld;
        changed_.notify_all();
    }
    /// Seconds of the clock.
    [[nodiscard]] std::vector<int> askedAt() const
    {
        const std::lock_guard lock(mutex_);
        return askedAt_;
    }

    std::optional<StorageOffer> offer;

private:
    const Clock& clock_;
    mutable std::mutex mutex_;
    std::condition_variable_any changed_;
    Result<std::optional<std::uint64_t>> answer_ = std::optional<std::uint64_t>(1'000);
    bool isHeld_ = false;
    std::vector<int> askedAt_;
};

class QuotaFetcherTest : public testing::Test {
protected:
    struct Told final : QuotaFetcherDelegate {
        void quotaFetcherDidUpdateValue(QuotaFetcher& fetcher, std::uint64_t freeBytes) override
        {
            EXPECT_EQ(fetcher.freeBytes(), freeBytes);
            values.push_back(freeBytes);
        }
        std::vector<std::uint64_t> values;
    };

    QuotaFetcherTest() { fetcher->delegate = told; }

    /// Lets time pass, every second's fetch come to its end, and says when there was one since the test began.
    std::vector<int> askedAfter(int seconds)
    {
        for (int second = 0; second < seconds; ++second) {
            platform.turn(1);
            platform.settle();
        }
        return quota.askedAt();
    }
    [[nodiscard]] std::size_t countOf(std::string_view text) const
    {
        const auto lines = platform.log->lines();
        return static_cast<std::size_t>(
            std::ranges::count_if(lines, [&](const auto& line) { return line.find(text) != line.npos; }));
    }

    InstalledPlatform platform;
    ToldQuota quota{platform.clock};
    platform::Scope scope{servicesWith(quota)};
    std::shared_ptr<Told> told = std::make_shared<Told>();
    std::shared_ptr<QuotaFetcher> fetcher = std::make_shared<QuotaFetcher>();
};

using Seconds = std::vector<int>;
using Values = std::vector<std::uint64_t>;

TEST_F(QuotaFetcherTest, AsksAtOnceAndThenInEachInterval)
{
    fetcher->runWithInterval(300);
    platform.settle();
    EXPECT_EQ(quota.askedAt(), Seconds({0}));
    EXPECT_EQ(askedAfter(905), Seconds({0, 300, 600, 900}));
    EXPECT_EQ(told->values, Values(4, 1'000));

    fetcher->runWithInterval(100); // in place of the other
    platform.settle();
    EXPECT_EQ(askedAfter(201), Seconds({0, 300, 600, 900, 905, 1005, 1105}));

    platform.clock.advance(1000); // the device slept: one fetch stands for all that were missed
    platform.settle();
    EXPECT_EQ(askedAfter(0).size(), 8U);
    EXPECT_EQ(askedAfter(100).back(), 2205);
    EXPECT_EQ(quota.askedAt().size(), 9U);
}

TEST_F(QuotaFetcherTest, AsksNothingWhileInactive)
{
    fetcher->runWithInterval(300);
    platform.settle();
    platform.services().notifications.post(kWillResignActiveNotification);
    fetcher->fetchNow();
    EXPECT_EQ(askedAfter(700), Seconds({0}));
    EXPECT_EQ(countOf("(TSD)[DEBUG] -[QuotaFetcher performFetch] (*) Not fetching quota: backgrounded."), 3U);

    platform.services().notifications.post(kDidBecomeActiveNotification);
    EXPECT_EQ(askedAfter(100), Seconds({0})); // not before its time
    EXPECT_EQ(askedAfter(200), Seconds({0, 900}));
}

TEST_F(QuotaFetcherTest, KeepsTheValueWhenAFetchFailsOrThereIsNone)
{
    fetcher->runWithInterval(300);
    platform.settle();
    quota.answer(Error{Domain::General, ErrorCode::kReadCorrupt, "The service is out.", ""});
    askedAfter(300);
    EXPECT_THAT(platform.log->lines(),
                Contains("(TSD)[WARNING] -[QuotaFetcher performFetch]_block_invoke (*) can't update quota: " +
                         describe(Error{Domain::General, ErrorCode::kReadCorrupt, "The service is out.", ""})));
    quota.answer(std::optional<std::uint64_t>());
    askedAfter(300);
    EXPECT_EQ(quota.askedAt().size(), 3U);
    EXPECT_EQ(fetcher->freeBytes(), 1'000U);
    EXPECT_EQ(told->values, Values({1'000}));

    ASSERT_FALSE(platform.services().cloud.signOut());
    EXPECT_EQ(askedAfter(300).size(), 3U);
    EXPECT_EQ(countOf("(TSD)[INFO] -[QuotaFetcher fetchUserQuotaWithCompletion:] (*) Not fetching quota. Ubiquity is "
                      "not enabled"),
              1U);
}

// The account is gone, or the window, while the service has not answered yet.
TEST_F(QuotaFetcherTest, EndsWhileItAsks)
{
    quota.answer(std::optional<std::uint64_t>(5), true);
    fetcher->runWithInterval(300);
    ASSERT_TRUE(platform.runUntil([&] { return !quota.askedAt().empty(); }));
    platform.services().notifications.post(kWillResignActiveNotification);
    fetcher.reset();
    platform.settle();
    EXPECT_EQ(told->values, Values());
    EXPECT_EQ(askedAfter(301), Seconds({0}));
}

// One that is under way when the program resigns still tells.
TEST_F(QuotaFetcherTest, TellsOfAFetchThatComesLate)
{
    quota.answer(std::optional<std::uint64_t>(5), true);
    fetcher->fetchNow();
    ASSERT_TRUE(platform.runUntil([&] { return !quota.askedAt().empty(); }));
    platform.services().notifications.post(kWillResignActiveNotification);
    quota.answer(std::optional<std::uint64_t>(7));
    platform.settle();
    EXPECT_EQ(told->values, Values({7}));
}

/// The program over such a service.
class QuotaInListsTest : public QuotaFetcherTest {
protected:
    QuotaInListsTest()
    {
        fetcher.reset();
        platform.drive.tree("Projects/Plan.txt Notes.txt");
    }
    void launch()
    {
        application.launch({});
        platform.settle();
    }
    [[nodiscard]] std::shared_ptr<NavController> navigation() const
    {
        return std::dynamic_pointer_cast<NavController>(delegate.rootWindow->rootViewController());
    }
    [[nodiscard]] static DriveStatusLabelView& labelsOf(const std::shared_ptr<ViewController>& list)
    {
        return *statusBar(static_cast<const DocumentListController&>(*list))->labelsView;
    }
    [[nodiscard]] DriveStatusLabelView& labels() const { return labelsOf(navigation()->topViewController()); }
    void offer(std::optional<StorageOffer> offer)
    {
        quota.offer = std::move(offer);
        platform.services().notifications.post(kCurrentOfferChangedNotification);
    }

    const StorageOffer moreRoom = {2, "More room", "Nearly full.", {OfferLink::kUpgradeFlow, ""}, true};
    AppDelegate delegate;
    Application application{delegate, platform.stateStore()};
};

TEST_F(QuotaInListsTest, FollowsTheAccount)
{
    quota.answer(std::optional<std::uint64_t>(0), true);
    application.launch({});
    EXPECT_TRUE(platform.runUntil([&] { return labels().primaryLabel->text() == "2 items"; })); // no more is known yet
    quota.answer(std::optional<std::uint64_t>(1'610'612'736));
    ASSERT_TRUE(platform.runUntil([&] { return navigation()->lastQuotaFetch.has_value(); }));
    EXPECT_EQ(labels().primaryLabel->text(), "2 items, 1.5 GB available");
    EXPECT_THAT(platform.log->lines(),
                Contains("(TSD)[DEBUG] -[NavController quotaFetcher:didUpdateValue:] (*) updated quota at 2026-11-22 "
                         "12:00:00 +0000: 1610612736 bytes avail"));

    ASSERT_FALSE(platform.services().cloud.signOut());
    platform.settle();
    EXPECT_EQ(navigation()->quotaFetcher, nullptr);
    EXPECT_EQ(navigation()->quotaBytes, 0U);
    const auto asked = quota.askedAt().size();
    EXPECT_EQ(askedAfter(600).size(), asked);
    ASSERT_FALSE(platform.services().cloud.signIn("Other"));
    platform.settle();
    EXPECT_EQ(quota.askedAt().size(), asked + 1);
    EXPECT_EQ(navigation()->quotaBytes, 1'610'612'736U);

    quota.answer(std::optional<std::uint64_t>()); // the account has no limit any more
    navigation()->quotaFetcher->fetchNow();
    platform.settle();
    EXPECT_EQ(labels().primaryLabel->text(), "2 items");
}

TEST_F(QuotaInListsTest, FollowsTheOffer)
{
    launch();
    navigation()->getTopDocumentListController()->pressRow(1);
    platform.settle();
    EXPECT_THAT(platform.log->lines(),
                Contains("(TSD)[INFO] -[NavController viewDidLoad] (*) Quota Offer level is not set"));
    quota.answer(std::optional<std::uint64_t>(2'000));
    const auto before = quota.askedAt().size();
    offer(moreRoom);

    EXPECT_THAT(platform.log->lines(),
                Contains("(TSD)[INFO] -[NavController offerChangedNotification:] (*) Quota Offer "
                         "Changed, offer level is 2"));
    ASSERT_EQ(navigation()->viewControllers().size(), 2U);
    EXPECT_TRUE(labelsOf(navigation()->viewControllers()[0]).showLowQuota());
    EXPECT_TRUE(labelsOf(navigation()->viewControllers()[1]).showLowQuota());
    auto asked = askedAfter(200);
    asked.erase(asked.begin(), asked.begin() + static_cast<std::ptrdiff_t>(before));
    EXPECT_EQ(asked, Seconds({1, 5, 20}));
    EXPECT_EQ(navigation()->quotaBytes, 2'000U);

    offer(std::nullopt);
    EXPECT_FALSE(labels().showLowQuota());
    EXPECT_EQ(navigation()->upgradeOffer, std::nullopt);
    ASSERT_FALSE(platform.services().cloud.signOut());
    EXPECT_THAT(askedAfter(30), Not(Contains(201))); // nobody is there to ask
}

TEST_F(QuotaInListsTest, LeadsThroughTheOffer)
{
    quota.offer = moreRoom;
    launch();
    EXPECT_THAT(platform.log->lines(), Contains("(TSD)[INFO] -[NavController viewDidLoad] (*) Quota Offer level is 2"));
    EXPECT_TRUE(labels().quotaButton->press());
    platform.settle();
    EXPECT_THAT(platform.log->lines(),
                Contains("(TSD)[INFO] -[NavController upgradeStorageButtonPressed] (*) UpgradeStorage: presenting view "
                         "controller"));
    const auto page = std::dynamic_pointer_cast<UpgradeViewController>(
        std::dynamic_pointer_cast<NavigationController>(navigation()->presentedViewController())->topViewController());
    ASSERT_TRUE(page);
    EXPECT_EQ(page->offer(), moreRoom);
    EXPECT_TRUE(page->navigationItem.rightItems().front()->press());
    platform.settle();
    EXPECT_EQ(navigation()->presentedViewController(), nullptr);

    offer(std::nullopt);
    navigation()->upgradeStorageButtonPressed();
    EXPECT_THAT(platform.log->lines(), Contains(EndsWith("UpgradeStorage: No upgrade offer")));
    EXPECT_EQ(navigation()->presentedViewController(), nullptr);
}

} // namespace
} // namespace tessel
