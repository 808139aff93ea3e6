#include "browser/StatusBar.h"
#include "platform/apps/ApplicationRegistry.h"
#include "platform/documents/DocumentListController.h"
#include "platform/ui/Device.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

namespace tessel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

StorageOffer offerWith(const OfferLink& link)
{
    return {
        .level = 2, .title = "More room", .message = "Your drive is nearly full.", .link = link, .showsButton = true};
}

struct PlacedLabels {
    double screenScale;
    const char* text;
    bool hasOffer;
    Rect label;
    Rect button;
};

class DriveStatusLabelViewTest : public testing::TestWithParam<PlacedLabels> {
protected:
    InstalledPlatform platform;
};

MATCHER_P(IsRect, expected, "")
{
    constexpr double kSmall = 1e-6;
    return std::abs(arg.x - expected.x) < kSmall && std::abs(arg.y - expected.y) < kSmall &&
           std::abs(arg.width - expected.width) < kSmall && std::abs(arg.height - expected.height) < kSmall;
}

// In a bar of 320 x 44 points. The text's 8 characters are 5.5 wide and 13.2 high; the button's title is 97.5 x 15.6
// and has 6 above and below. Together they are 13.2 + 3.3 + 15.6 high.
TEST_P(DriveStatusLabelViewTest, StandsInTheMiddleOfItsBar)
{
    const auto& wanted = GetParam();
    platform.services().device.screenScale = wanted.screenScale;
    const auto bar = std::make_shared<DocumentListControllerStatusBar>();
    bar->createStatusBar({}, nullptr);
    bar->setStatusText(wanted.text);
    bar->showUpgradeOffer(wanted.hasOffer ? std::optional(offerWith({})) : std::nullopt);
    bar->labelsView->setFrame({0, 0, 320, 44});
    bar->labelsView->layoutIfNeeded();

    EXPECT_THAT(bar->labelsView->primaryLabel->frame(), IsRect(wanted.label));
    EXPECT_EQ(bar->labelsView->quotaButton->hidden(), !wanted.hasOffer);
    if (wanted.hasOffer) {
        EXPECT_THAT(bar->labelsView->quotaButton->frame(), IsRect(wanted.button));
    }
}

INSTANTIATE_TEST_SUITE_P(Frames, DriveStatusLabelViewTest,
                         testing::Values(PlacedLabels{1, "12 items", false, {138, 14, 44, 13.2}, {}},
                                         PlacedLabels{2, "12 items", false, {138, 14.5, 44, 13.2}, {}},
                                         PlacedLabels{
                                             2, "12 items", true, {138, 5, 44, 13.2}, {111.5, 15.5, 97.5, 27.6}},
                                         PlacedLabels{1, "", false, {160, 21, 0, 0}, {}},
                                         PlacedLabels{1, "", true, {160, 13, 0, 0}, {111, 7, 97.5, 27.6}}));

/// Applications of which one opens links, or none.
class Browser final : public ApplicationRegistry {
public:
    [[nodiscard]] std::shared_ptr<const ApplicationRecord> application(std::string_view) const override { return {}; }
    [[nodiscard]] RankedApplications applicationsForDocument(const URL&) const override { return {}; }
    [[nodiscard]] std::optional<Error> openDocument(const URL&, const ApplicationRecord&) override { return {}; }
    [[nodiscard]] std::optional<Error> openLink(const std::string& link) override
    {
        opened.push_back(link);
        return failure;
    }
    [[nodiscard]] bool isAwaitingDocuments() const override { return false; }

    std::vector<std::string> opened;
    std::optional<Error> failure;
};

class StatusBarTest : public testing::Test {
protected:
    struct Presses final : DocumentListControllerStatusBarDelegate {
        void upgradeStorageButtonPressed() override { ++count; }
        int count = 0;
    };

    void press(const OfferLink& link)
    {
        const auto bar = std::make_shared<DocumentListControllerStatusBar>();
        bar->createStatusBar(offerWith(link), presses);
        platform.log->clear();
        bar->labelsView->quotaButton->press();
    }

    InstalledPlatform platform;
    Browser browser;
    platform::Scope scope{servicesWith(browser)};
    std::shared_ptr<Presses> presses = std::make_shared<Presses>();
};

TEST_F(StatusBarTest, FollowsTheLinkOfThePressedOffer)
{
    const auto function = std::string("(TSD)[INFO] -[DocumentListControllerStatusBar upgradeStoragePressed:] (*) ");
    press({1, "https://orvane.example/storage"});
    EXPECT_THAT(browser.opened, ElementsAre("https://orvane.example/storage"));
    EXPECT_THAT(platform.log->lines(),
                ElementsAre(function + "================= Pressed Upgrade Storage",
                            function + "UpgradeStorage button pressed, link.action=1",
                            function + "UpgradeStorage button pressed, launched default action (Manage Storage?)"));
    EXPECT_EQ(presses->count, 0);

    browser.opened.clear();
    press({OfferLink::kUpgradeFlow, "https://orvane.example/storage"});
    EXPECT_THAT(browser.opened, IsEmpty());
    EXPECT_THAT(platform.log->lines(), Contains(function + "UpgradeStorage button pressed, link.action=3"));
    EXPECT_EQ(presses->count, 1);

    browser.failure = Error{Domain::General, ErrorCode::kUnsupported, "There is no browser.", ""};
    press({1, "https://orvane.example/storage"});
    press({2, ""});
    EXPECT_THAT(platform.log->lines(), Contains(EndsWith("link.action=2")));
    EXPECT_EQ(presses->count, 1);
    presses.reset();
    press({OfferLink::kUpgradeFlow, ""}); // nobody is there any more
}

TEST_F(StatusBarTest, LivesWithItsList)
{
    auto list = DocumentListController::create();
    const auto other = DocumentListController::create();
    createStatusBar(*list, {}, presses);
    displayStatusBar(*list);
    const std::weak_ptr<DocumentListControllerStatusBar> bar = statusBar(*list);

    EXPECT_EQ(statusBar(*other), nullptr);
    ASSERT_EQ(list->toolbarItems().size(), 3U);
    EXPECT_EQ(list->toolbarItems()[0]->kind(), BarButtonItem::Kind::FlexibleSpace);
    EXPECT_EQ(list->toolbarItems()[1]->customView(), bar.lock()->labelsView);
    EXPECT_EQ(list->toolbarItems()[2]->kind(), BarButtonItem::Kind::FlexibleSpace);
    EXPECT_TRUE(bar.lock()->labelsView->quotaButton->hidden());

    list.reset();
    EXPECT_TRUE(bar.expired());
}

} // namespace
} // namespace tessel
