#include "app/common/TesselDriveApp_StrataAdditions.h"
#include "app/entry/AppDelegate.h"
#include "browser/NavController.h"
#include "files/DRItem.h"
#include "platform/base/KeyedArchive.h"
#include "platform/base/PercentEncoding.h"
#include "platform/base/Platform.h"
#include "platform/base/URLComponents.h"
#include "platform/cloud/ActivityService.h"
#include "platform/cloud/CloudService.h"
#include "platform/documents/SearchController.h"
#include "preview/PreviewItemManager.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

namespace tessel {
namespace {

using testing::Contains;
using testing::HasSubstr;

/// The program, asked from outside.
class RoutingTest : public testing::Test {
protected:
    RoutingTest()
    {
        drive.tree("orvane~Quillbox/Work/Plan.txt orvane~Quillbox/Work/A.txt orvane~Quillbox/Other/ outside/Secret.txt "
                   "orvane~Quillbox/.Trash/Old.txt");
        drive.link("orvane~Quillbox/escape", "../outside");
        application.launch({});
        platform.settle();
        platform.log->clear();
    }
    [[nodiscard]] std::shared_ptr<NavController> navigation() const
    {
        return std::dynamic_pointer_cast<NavController>(delegate.rootWindow->rootViewController());
    }
    /// "Plan.txt 1" for the details of that document; the title of a list.
    [[nodiscard]] std::string shown()
    {
        platform.settle();
        const auto& manager = navigation()->itemManager;
        return manager && manager->item()
                   ? std::string(manager->item()->url()->lastPathComponent()) + " " + std::to_string(manager->mode)
                   : navigation()->topViewController()->title();
    }
    [[nodiscard]] std::string encoded(std::string_view name) const
    {
        return percentEncodedPath(drive.url(name).path());
    }
    bool open(const std::string& rest) { return application.openURL("tesseldriveapp:" + rest); }
    [[nodiscard]] Value archived(std::string_view name) const
    {
        return Data{keyedArchive::archived(Value(drive.url(name)))};
    }
    [[nodiscard]] std::string identifierOf(std::string_view name) const
    {
        return std::to_string(tsd_DocumentID(drive.url(name)));
    }

    InstalledPlatform platform{{"orvane.Lookbook", "Lookbook"}};
    const TemporaryDrive& drive = platform.drive;
    AppDelegate delegate;
    Application application{delegate, platform.stateStore()};
};

constexpr const char* kPlan = "orvane~Quillbox/Work/Plan.txt";

TEST_F(RoutingTest, OpensURLsInTheModeTheyAskFor)
{
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"", "Plan.txt 0"},
        {"?mode=preview", "Plan.txt 0"},
        {"?mode=details", "Plan.txt 1"},
        {"?mode=info#part", "Plan.txt 1"},
        {"?mode=other&mode", "Plan.txt 0"},
        {"?mode=details&mode=preview", "Plan.txt 0"},
        {"?other=details&mode=details&mode=other", "Plan.txt 1"},
        {"?%256dode=%2564etails", "Plan.txt 1"},
    };
    for (const auto& [query, expected] : cases) {
        EXPECT_TRUE(open(encoded(kPlan) + query)) << query;
        EXPECT_EQ(shown(), expected) << query;
    }
    EXPECT_TRUE(open("//host:1" + encoded("orvane~Quillbox/Work/") + "/%2541.txt"));
    EXPECT_EQ(shown(), "A.txt 0");
    EXPECT_TRUE(open(encoded("orvane~Quillbox/Other")));
    EXPECT_EQ(shown(), "Other");
}

TEST_F(RoutingTest, RefusesWhatIsNotItsOwn)
{
    const auto plan = encoded(kPlan);
    const std::vector<std::string> urls = {"TesselDriveApp:" + plan,
                                           "file://" + plan,
                                           plan,
                                           std::string(),
                                           std::string("tesseldriveapp:"),
                                           "tesseldriveapp:relative",
                                           "tesseldriveapp:" + plan + "%2500",
                                           "tesseldriveapp:" + plan + "%25",
                                           "tesseldriveapp:" + plan + "%2",
                                           "tesseldriveapp:" + plan + " ",
                                           "tesseldriveapp:" + plan + "?mode=%4",
                                           "tesseldriveapp:/" + std::string(5000, 'a'),
                                           "tesseldriveapp:/" + std::string(100'000, 'a'),
                                           "tesseldriveapp:" + encoded("outside/Secret.txt"),
                                           "tesseldriveapp:" + encoded("orvane~Quillbox") + "/../outside/Secret.txt",
                                           "tesseldriveapp:" + encoded("orvane~Quillbox") +
                                               "/%252e%252e/outside/Secret.txt",
                                           "tesseldriveapp:" + encoded("orvane~Quillbox/escape/Secret.txt"),
                                           "tesseldriveapp:" + encoded("orvane~Quillbox/.Trash/Old.txt")};
    for (const auto& url : urls) {
        EXPECT_FALSE(application.openURL(url)) << url.substr(0, 200);
        EXPECT_EQ(shown(), "Tessel Drive") << url.substr(0, 200);
    }
}

TEST_F(RoutingTest, FollowsShortcuts)
{
    application.performShortcut({ShortcutItem::kSearch, {}});
    platform.turn(1);
    EXPECT_TRUE(navigation()->getTopDocumentListController()->searchFieldIsFirstResponder());

    const auto number = static_cast<std::int64_t>(std::stoull(identifierOf("orvane~Quillbox/Work/A.txt")));
    application.performShortcut({ShortcutItem::kRecentDocument, {{ShortcutItem::kDocumentIdentifierKey, number}}});
    EXPECT_EQ(shown(), "A.txt 0");
    application.performShortcut(
        {ShortcutItem::kRecentDocument,
         {{ShortcutItem::kAliasURLKey, archived(kPlan)}, {ShortcutItem::kDocumentIdentifierKey, number}}});
    EXPECT_EQ(shown(), "Plan.txt 0");
    application.performShortcut({ShortcutItem::kRecentDocument,
                                 {{ShortcutItem::kAliasURLKey, Data{"no archive"}},
                                  {ShortcutItem::kDocumentURLKey, archived("orvane~Quillbox/Work/A.txt")}}});
    EXPECT_EQ(shown(), "A.txt 0");
    application.performShortcut({ShortcutItem::kRecentDocument, {{ShortcutItem::kDocumentIdentifierKey, "12"}}});
    application.performShortcut({"other", {}});
    EXPECT_EQ(shown(), "A.txt 0");
}

TEST_F(RoutingTest, ContinuesActivities)
{
    EXPECT_TRUE(application.continueActivity({UserActivity::kSearchQuery, {{UserActivity::kSearchQueryKey, "plan"}}}));
    platform.turn(1);
    const auto search = std::dynamic_pointer_cast<SearchController>(navigation()->presentedViewController());
    EXPECT_EQ(search ? search->query() : "", "plan");

    EXPECT_TRUE(application.continueActivity(
        {UserActivity::kSearchResult, {{UserActivity::kSearchItemIdentifierKey, identifierOf(kPlan)}}}));
    EXPECT_EQ(shown(), "Plan.txt 0");
    EXPECT_TRUE(
        application.continueActivity({UserActivity::kSearchResult, {{UserActivity::kSearchItemIdentifierKey, "77"}}}));
    EXPECT_THAT(platform.log->lines(), Contains(HasSubstr("Can't get URL for DocumentID: 77")));

    std::string bookmark;
    platform::installed().cloud.bookmarkableString(drive.url("orvane~Quillbox/Work/A.txt"),
                                                   [&](const auto& string) { bookmark = string ? *string : ""; });
    platform.settle();
    const auto document = [](const std::string& text) {
        return UserActivity{"orvane.quillbox.viewing", {{ContinuationActivity::kDocumentURLKey, text}}};
    };
    EXPECT_TRUE(application.continueActivity(document(bookmark)));
    EXPECT_EQ(shown(), "A.txt 0");
    for (const auto* wrong :
         {"", "drive:/../outside/Secret.txt", "drive:/orvane~Quillbox/%2e%2e/outside/Secret.txt",
          "drive:/orvane~Quillbox/None.txt", "drive:/orvane~Quillbox/escape/Secret.txt", "drive:%"}) {
        platform.log->clear();
        EXPECT_TRUE(application.continueActivity(document(wrong)));
        EXPECT_EQ(shown(), "A.txt 0") << wrong;
        EXPECT_THAT(platform.log->lines(), Contains(HasSubstr("Relaya failed to decode bookmark"))) << wrong;
    }
    EXPECT_FALSE(application.continueActivity({"other", {}}));
    EXPECT_THAT(platform.log->lines(), Contains(HasSubstr("Invalid user activity type other")));
}

TEST_F(RoutingTest, ScrollsThroughALibraryForATest)
{
    EXPECT_FALSE(application.runTest("Jump", {}));
    EXPECT_TRUE(application.runTest("ScrollThumbnails", {{"iterations", "3"}, {"delta", "12"}}));
    platform.settle();
    const auto list = navigation()->getTopDocumentListController();
    EXPECT_EQ(list->title(), "Lookbook");
    std::vector<ScrollTest> tests;
    list->scrollTestBegan = [&](const ScrollTest& test) { tests.push_back(test); };
    platform.turn(4.9);
    EXPECT_TRUE(tests.empty());
    platform.turn(0.2);
    ASSERT_EQ(tests.size(), 1U);
    EXPECT_TRUE(tests[0].iterations == 3 && tests[0].delta == 12 && tests[0].mode == ListMode::Thumbnails);
}

TEST(RoutingStartTest, PerformsTheShortcutThatLaunchedIt)
{
    InstalledPlatform platform{{"orvane.Lookbook", "Lookbook"}};
    platform.drive.tree("orvane~Quillbox/Work/Plan.txt");
    platform.drive.folder("orvane~Quillbox");
    AppDelegate delegate;
    LaunchOptions options;
    options.shortcutItem = {
        ShortcutItem::kRecentDocument,
        {{ShortcutItem::kDocumentURLKey, Data{keyedArchive::archived(Value(platform.drive.url(kPlan)))}}}};
    EXPECT_FALSE(delegate.applicationWillFinishLaunchingWithOptions(options));
    const auto navigation = std::dynamic_pointer_cast<NavController>(delegate.rootWindow->rootViewController());
    platform.settle();
    ASSERT_TRUE(navigation->itemManager);
    EXPECT_EQ(navigation->itemManager->item()->url(), platform.drive.url(kPlan));
}

} // namespace
} // namespace tessel
