#include "platform/base/NotificationCenter.h"
#include "platform/base/Platform.h"
#include "platform/cloud/OfferManager.h"
#include "platform/cloud/QuotaService.h"
#include "platform/linux/cloud/DriveUsage.h"
#include "platform/linux/cloud/Placeholder.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace tessel {
namespace {

using testing::Contains;
using testing::HasSubstr;

constexpr const char* kTop = "orvane~Quillbox/";

class HomeFiles : public testing::Test {
protected:
    /// Writes a file of the home, in one step.
    void home(const std::string& name, std::string_view content) const
    {
        const auto folder = platform.drive.url().deletingLastPathComponent();
        std::ofstream(folder.appending("written").path()) << content;
        std::filesystem::rename(folder.appending("written").path(), folder.appending(name).path());
    }

    InstalledPlatform platform{{.identifier = "orvane.Lookbook", .localizedName = "Lookbook"}};
    const TemporaryDrive& drive = platform.drive;
};

class QuotaTest : public HomeFiles {
protected:
    [[nodiscard]] std::optional<std::uint64_t> freeBytes() const
    {
        const auto result = platform::installed().quota.freeBytes({});
        EXPECT_TRUE(result) << describe(result.error());
        return result ? *result : std::nullopt;
    }
};

TEST_F(QuotaTest, IsWhatTheFileSystemHasUnlessTheUserSaysMore)
{
    const auto available = [this] { return std::filesystem::space(drive.url().path()).available; };
    const auto before = available();
    const auto told = freeBytes().value_or(0);
    EXPECT_NEAR(static_cast<double>(told), static_cast<double>(before), 1e9); // others write to it, too
    home("quota.json", "{}");
    EXPECT_NEAR(static_cast<double>(freeBytes().value_or(0)), static_cast<double>(before), 1e9);

    home("quota.json", R"({"accountSize": "unlimited"})");
    EXPECT_EQ(freeBytes(), std::nullopt);
}

TEST_F(QuotaTest, CountsWhatTheDriveHoldsHereAndInTheCloud)
{
    home("quota.json", R"({"accountSize": 1000})");
    const auto empty = freeBytes().value_or(0);
    drive.file(std::string(kTop) + "Plan.txt", std::string(100, 'x'));
    drive.file(std::string(kTop) + ".Trash/Old.txt", std::string(20, 'x'));
    drive.file("orvane~Lookbook/Documents/Deep/Sketch.txt", std::string(3, 'x'));
    drive.link(std::string(kTop) + "Again", "Plan.txt");
    EXPECT_EQ(freeBytes(), empty - 123);

    const auto far = drive.url(std::string(kTop) + "Far.txt");
    ASSERT_FALSE(writePlaceholder(far, {"Far.txt", 200, {}, {}, "public.plain-text", "id", {}}));
    EXPECT_EQ(freeBytes(), empty - 323);
    drive.file(std::string(kTop) + "Far.txt", "here"); // where both are, the file counts
    EXPECT_EQ(freeBytes(), empty - 127);

    home("quota.json", R"({"accountSize": 50})");
    EXPECT_EQ(freeBytes(), 0U);
}

TEST_F(QuotaTest, RefusesWhatSaysNoSize)
{
    for (const auto* content : {"", "[]", "{", R"({"accountSize": -1})", R"({"accountSize": 1.5})",
                                R"({"accountSize": "much"})", R"({"accountSize": null})"}) {
        home("quota.json", content);
        const auto result = platform::installed().quota.freeBytes({});
        ASSERT_FALSE(result) << content;
        EXPECT_EQ(result.error().code, ErrorCode::kReadCorrupt) << content;
    }
    home("quota.json", std::string(5000, ' ') + "{}");
    EXPECT_FALSE(platform::installed().quota.freeBytes({}));
}

/// Goes on by a second with each look at it.
class GoingClock final : public Clock {
public:
    [[nodiscard]] Date now() const override { return {}; }
    [[nodiscard]] Ticks uptime() const override { return std::chrono::seconds(seconds++); }
    mutable int seconds = 0;
};

TEST_F(QuotaTest, CountsNoMoreOftenThanIsCheap)
{
    const GoingClock clock;
    DriveUsage usage(clock);
    const auto count = [&](const std::stop_token& stop = {}) { return *usage.bytesIn({drive.url(kTop)}, stop); };
    const auto before = count(); // from 0 to 1, so it is good until 11
    drive.file(std::string(kTop) + "Plan.txt", "12345");
    EXPECT_EQ(count(), before);
    EXPECT_EQ(*usage.bytesIn(
                  {drive.url(std::string(kTop) + "Plan.txt").deletingLastPathComponent(), drive.url("orvane~Lookbook")},
                  {}) > before,
              true);
    clock.seconds = 100;
    EXPECT_EQ(count(), before + 5);

    std::stop_source stopped;
    stopped.request_stop();
    clock.seconds = 200;
    count(stopped.get_token());
    EXPECT_EQ(count(), before + 5); // what was cut short is not kept
    EXPECT_FALSE(usage.bytesIn({drive.url("gone")}, {}));
}

constexpr const char* kOffer = R"({"currentOffer": {"level": 2, "title": "Möre", "message": "Text", "showsButton": true,
                                                    "link": {"action": 1, "url": "https://orvane.example"}}})";

class OffersTest : public HomeFiles {
protected:
    [[nodiscard]] const std::optional<StorageOffer>& offer() const { return offers.currentOffer(); }
    /// Waits until the offers have read a file again; time passes meanwhile.
    bool becomes(const std::function<bool()>& condition)
    {
        return platform.runUntil([&] {
            platform.turn(0.1);
            return condition();
        });
    }

    OfferManager& offers = platform::installed().quota.offers();
    int changes = 0;
    NotificationCenter::Observation changed =
        platform.services().notifications.observe(kCurrentOfferChangedNotification, [this] { ++changes; });
};

TEST_F(OffersTest, FollowTheirFile)
{
    home("offers.json", kOffer);
    EXPECT_TRUE(offers.fetchOfferIfNeeded());
    EXPECT_FALSE(offers.fetchOfferIfNeeded());
    EXPECT_EQ(offer(), std::nullopt);
    platform.settle();
    EXPECT_EQ(offer(), (StorageOffer{2, "Möre", "Text", {1, "https://orvane.example"}, true}));
    EXPECT_EQ(changes, 1);

    home("offers.json", R"({"currentOffer": {"level": 3}})");
    EXPECT_TRUE(becomes([&] { return changes == 2; }));
    EXPECT_EQ(offer(), StorageOffer{.level = 3});
    std::filesystem::remove(drive.url().deletingLastPathComponent().appending("offers.json").path());
    EXPECT_TRUE(becomes([&] { return changes == 3; }));
    EXPECT_EQ(offer(), std::nullopt);
}

TEST_F(OffersTest, SayNothingWhereNothingIsOffered)
{
    EXPECT_TRUE(offers.fetchOfferIfNeeded());
    platform.settle();
    home("offers.json", R"({"currentOffer": null})");
    home("offers.json", kOffer);
    EXPECT_TRUE(becomes([&] { return offer().has_value(); }));
    EXPECT_EQ(changes, 1);
}

// Who brings the offers may be wrong, or hostile.
TEST_F(OffersTest, KeepTheOfferThatThereWasWhenTheFileIsDamaged)
{
    home("offers.json", kOffer);
    EXPECT_TRUE(offers.fetchOfferIfNeeded());
    platform.settle();
    const auto kept = offer();
    for (const auto& content :
         {std::string("{"), std::string("[]"), std::string(R"({"currentOffer": 5})"),
          std::string(R"({"currentOffer": {"level": "2"}})"), std::string(R"({"currentOffer": {"level": 4294967296}})"),
          std::string(R"({"currentOffer": {"title": 5}})"), std::string(R"({"currentOffer": {"link": []}})"),
          std::string(R"({"currentOffer": {"link": {"action": 1.5}}})"),
          std::string(R"({"currentOffer": {"title": ")") + "\xff" + R"("}})", std::string(60'000, '['),
          R"({"currentOffer": {"title": ")" + std::string(70'000, 'x') + R"("}})"}) {
        platform.log->clear();
        home("offers.json", content);
        EXPECT_TRUE(becomes([&] { return !platform.log->lines().empty(); })) << content.substr(0, 60);
        EXPECT_THAT(platform.log->lines(), Contains(HasSubstr("offers.json, keeping the offer that there was: ")));
        EXPECT_EQ(offer(), kept);
    }
    EXPECT_EQ(changes, 1);
}

} // namespace
} // namespace tessel
