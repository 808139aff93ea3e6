#include "browser/NavController.h"

#include "app/entry/AppDelegate.h"
#include "platform/base/Platform.h"
#include "platform/cloud/CloudService.h"
#include "platform/cloud/UserDefaults.h"
#include "platform/documents/SearchController.h"
#include "platform/documents/UnavailableViewController.h"
#include "tests/support/DesktopOfTest.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tessel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* kTokenKey = "orvane.TesselDriveApp.UbiquityIdentityToken";

/// The program as it stands after its start, on a drive of the test's own.
class NavControllerTest : public testing::Test {
protected:
    void launch()
    {
        application.launch({});
        platform.settle();
    }
    [[nodiscard]] std::shared_ptr<NavController> navigation() const
    {
        return std::dynamic_pointer_cast<NavController>(delegate.rootWindow->rootViewController());
    }
    [[nodiscard]] std::shared_ptr<DocumentListController> topList() const
    {
        return navigation()->getTopDocumentListController();
    }
    [[nodiscard]] std::vector<std::string> titles() const
    {
        std::vector<std::string> result;
        for (const auto& controller : navigation()->viewControllers())
            result.push_back(controller->title());
        return result;
    }
    void tap(const std::string& title)
    {
        for (std::size_t index = 0; index < topList()->containedItemCount(); ++index)
            if (topList()->row(index).title == title) {
                platform.log->clear();
                topList()->pressRow(index);
                platform.settle();
                return;
            }
        FAIL() << "no row is called " << title;
    }
    [[nodiscard]] std::string at(std::string_view name) const { return drive.url(name).absoluteString(); }

    InstalledPlatform platform;
    const TemporaryDrive& drive = platform.drive;
    AppDelegate delegate;
    Application application{delegate, platform.stateStore()};
};

// What a start logs is read by people who look for a fault in it: line for line.
TEST_F(NavControllerTest, LogsItsStart)
{
    drive.file("Plan.txt");
    launch();

    const auto setup = std::string("(TSD)[DEBUG] -[NavController setupInitialViewController] (*) ");
    const auto list = std::string("(TSD)[DEBUG] -[NavController initNewListController:] (*) ");
    const auto title = navigation()->viewTitle;
    const std::vector<std::string> built = {
        setup + "Tessel is enabled",
        setup + "Contained items: ()",
        list + "New DLC (0 items): \"" + title + "\", UTI=public.folder, URL=" + drive.url().absoluteString(),
    };
    auto lines = platform.log->lines();
    std::erase_if(lines, [](const std::string& line) { return line.find("DLC items changed") != std::string::npos; });
    std::erase_if(lines, [](const std::string& line) { return line.find("updated quota") != std::string::npos; });
    EXPECT_THAT(lines,
                ElementsAre(built[0], built[1], built[2], setup + "NavController viewDidLoad",
                            "(TSD)[INFO] -[NavController viewDidLoad] (*) Quota Offer level is not set",
                            "(TSD)[INFO] -[NavController didBecomeActiveNotification:] (*) (nav) Did become active",
                            "(TSD)[INFO] -[NavController handleAccountChanges] (*) Tessel Token Changed, enabled=YES, "
                            "reinitializing view",
                            built[0], built[1], built[2], setup + "NavController viewDidLoad", built[2]));
}

TEST_F(NavControllerTest, ShowsTheTopFolderReadyForUse)
{
    drive.tree("Projects/ Plan.txt");
    launch();

    EXPECT_EQ(titles().size(), 1U);
    EXPECT_EQ(topList()->containedItemCount(), 2U);
    EXPECT_EQ(topList()->offeredActions, 0x7DU);
    EXPECT_EQ(topList()->view().backgroundColor(), Color::white());
    EXPECT_FALSE(navigation()->toolbarHidden());
    EXPECT_EQ(navigation()->restorationIdentifier, "Root");
    EXPECT_TRUE(delegate.applicationShouldSaveApplicationState());
}

TEST_F(NavControllerTest, WalksDownAndLogsIt)
{
    drive.tree("Projects/ Projects/Plan.txt");
    launch();
    tap("Projects");

    EXPECT_THAT(titles(), ElementsAre(navigation()->viewControllers()[0]->title(), "Projects"));
    const auto tapped =
        std::string("(TSD)[INFO] -[NavController documentListController:didSelectContainerWithViewController:] (*) ");
    const auto list = std::string("(TSD)[DEBUG] -[NavController initNewListController:] (*) ");
    EXPECT_THAT(
        platform.log->lines(),
        testing::IsSupersetOf({tapped + "================= Selected Folder (dlc)",
                               tapped + "User selected folder " + at("Projects"),
                               list + "New DLC (0 items): \"Projects\", UTI=public.folder, URL=" + at("Projects")}));
}

TEST_F(NavControllerTest, OpensATappedDocumentWhereAnApplicationOwnsIt)
{
    const auto plan = drive.file("Plan.txt", "four");
    launch();
    tap("Plan.txt");

    const auto tapped = std::string("-[NavController documentListController:didSelectItemAtURL:] (*) ");
    auto lines = platform.log->lines();
    lines.resize(7); // then the preview's own
    EXPECT_THAT(lines,
                ElementsAre("(TSD)[INFO] " + tapped + "================= Selected Item (dlc)",
                            "(TSD)[INFO] " + tapped + "Picked URL: " + plan.absoluteString(),
                            "(TSD)[DEBUG] " + tapped + "DRItem: Name=Plan.txt, Size=4, URL=" + plan.absoluteString() +
                                ", ResURL=<same>, PromiseURL=<same>, Local, (4 bytes txt)",
                            HasSubstr("Opening document " + plan.absoluteString()), HasSubstr("which is not."),
                            HasSubstr("No default app"),
                            "(TSD)[DEBUG] " + tapped + "openInDefaultApp returned NO, showing preview"));
    EXPECT_EQ(platform.services().log.activityLabel(), "Selected Item (dlc)");
    EXPECT_EQ(topList(), nullptr);
    navigation()->pressBack();
    platform.settle();

    DesktopOfTest(platform.desktop).editor("editor", "text/plain;");
    tap("Plan.txt");
    EXPECT_EQ(platform.log->lines().back(), "(TSD)[DEBUG] " + tapped + "openInDefaultApp returned YES, app launched");
    EXPECT_EQ(titles().size(), 1U);
}

TEST_F(NavControllerTest, RebuildsTheStackWhenATappedDocumentIsGone)
{
    drive.folder("Projects");
    launch();
    tap("Projects");
    const auto top = topList();

    navigation()->documentListControllerDidSelectItemAtURL(*top, drive.url("Projects/Gone.txt"));
    EXPECT_EQ(topList(), top) << "not before the current event has ended";
    platform.settle();

    EXPECT_EQ(titles().size(), 1U);
}

TEST_F(NavControllerTest, NeitherOpensNorEntersAnythingWhileSelecting)
{
    drive.tree("Projects/ inside->Projects");
    launch();
    navigation()->editMode = true;

    const auto list = topList();
    navigation()->documentListControllerDidSelectContainerWithViewController(
        *list, DocumentListController::create(drive.url("Projects")));
    navigation()->documentListControllerDidSelectItemAtURL(*list, drive.url("inside"));

    EXPECT_EQ(topList(), list);
    EXPECT_THAT(platform.log->lines(), Contains(HasSubstr("DLC Navigation not allowed while in edit mode")));
    EXPECT_THAT(platform.log->lines(), Contains(HasSubstr("DLC Selection not allowed while in edit mode")));
    navigation()->navigationControllerDidShowViewController(*navigation(), list, Animated::No);
    EXPECT_FALSE(navigation()->editMode) << "the list shown is not editing";
}

struct LinkCase {
    const char* tree;
    const char* tapped;
    const char* logged;
    std::vector<std::string> stackBelowTop;
};

void PrintTo(const LinkCase& link, std::ostream* stream)
{
    *stream << link.tree;
}

class NavControllerLinks : public NavControllerTest, public testing::WithParamInterface<LinkCase> {};

TEST_P(NavControllerLinks, AreFollowedInsideTheDriveOnly)
{
    drive.tree(GetParam().tree);
    launch();
    tap(GetParam().tapped);

    EXPECT_THAT(platform.log->lines(), Contains(HasSubstr(GetParam().logged)));
    auto stack = titles();
    stack.erase(stack.begin());
    EXPECT_EQ(stack, GetParam().stackBelowTop);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, NavControllerLinks,
    testing::Values(
        LinkCase{"out->/usr/share", "out", "DLC Selection is symlink to outside target: file:///usr/share", {}},
        LinkCase{"up->../..", "up", "DLC Selection is symlink to outside target: ", {}},
        LinkCase{"step->hop hop->/usr", "step", "DLC Selection is symlink to outside target: ", {}},
        LinkCase{"broken->missing.txt", "broken", "DLC Selection is symlink that didn't resolve to valid target: ", {}},
        LinkCase{"A/B/C/ deep->A/B/C", "deep", "Building DLC stack for symlink to ", {"A", "B", "C"}},
        LinkCase{"A/ A/Plan.txt doc->A/Plan.txt", "doc", "DRItem: Name=doc", {"Plan.txt"}}));

TEST_F(NavControllerTest, FollowsTheAccount)
{
    auto& cloud = platform.services().cloud;
    launch();
    const auto builtAtStart = topList();
    EXPECT_FALSE(platform.services().defaults.value(kTokenKey).isNone());

    application.becomeActive();
    platform.log->clear();
    application.resignActive();
    application.becomeActive();
    platform.settle();
    EXPECT_EQ(topList(), builtAtStart);
    EXPECT_THAT(platform.log->lines(), Contains(HasSubstr("Tessel Token Matches")));

    ASSERT_EQ(cloud.signOut(), std::nullopt);
    platform.settle();
    ASSERT_EQ(navigation()->viewControllers().size(), 1U);
    EXPECT_TRUE(std::dynamic_pointer_cast<UnavailableViewController>(navigation()->topViewController()));
    EXPECT_EQ(topList(), nullptr);
    EXPECT_TRUE(navigation()->toolbarHidden());
    EXPECT_TRUE(platform.services().defaults.value(kTokenKey).isNone());
    EXPECT_FALSE(delegate.applicationShouldSaveApplicationState());
    EXPECT_FALSE(delegate.applicationShouldRestoreApplicationState());

    ASSERT_EQ(cloud.signIn("ada"), std::nullopt);
    platform.settle();
    const auto builtForAda = topList();
    ASSERT_NE(builtForAda, nullptr);
    EXPECT_FALSE(navigation()->toolbarHidden());

    ASSERT_EQ(cloud.signIn("bob"), std::nullopt);
    platform.settle();
    EXPECT_NE(topList(), builtForAda);
}

TEST_F(NavControllerTest, RefusesToWarpOutOfTheDriveOrIntoItsTrash)
{
    drive.tree(".Trash/ .Trash/Old.txt Plan.txt");
    launch();
    navigation()->present(UnavailableViewController::create(), Animated::No);

    EXPECT_FALSE(navigation()->warpToNewURL(URL::file("/etc/passwd"), 0));
    EXPECT_EQ(navigation()->presentedViewController(), nullptr);
    EXPECT_FALSE(navigation()->warpToNewURL(drive.url(".Trash/Old.txt"), 0));
    EXPECT_FALSE(navigation()->warpToNewURL(std::nullopt, 0));
    EXPECT_THAT(platform.log->lines(), Contains(HasSubstr("Preview URL is in Trash: " + at(".Trash/Old.txt"))));
}

TEST_F(NavControllerTest, SearchesFromTheTopAfterAShortWait)
{
    drive.tree("A/B/ A/B/Report.txt");
    launch();
    tap("A");

    navigation()->startSearch("report");
    platform.settle();
    EXPECT_EQ(titles().size(), 1U);
    EXPECT_FALSE(topList()->searchFieldIsFirstResponder());

    platform.turn(0.69);
    EXPECT_FALSE(topList()->searchFieldIsFirstResponder());
    platform.turn(0.02);
    EXPECT_TRUE(topList()->searchFieldIsFirstResponder());
    const auto search = std::dynamic_pointer_cast<SearchController>(navigation()->presentedViewController());
    ASSERT_NE(search, nullptr);
    platform.runUntil([&] { return !search->isBusy(); });
    ASSERT_EQ(search->results().size(), 1U);
    EXPECT_EQ(search->results()[0].url, drive.url("A/B/Report.txt"));
}

TEST_F(NavControllerTest, GoesFromASearchResultToItsFolder)
{
    drive.tree("A/Wanted/ A/Other/");
    launch();
    topList()->startSearch("wanted");
    const auto search = std::dynamic_pointer_cast<SearchController>(navigation()->presentedViewController());
    ASSERT_NE(search, nullptr);
    platform.runUntil([&] { return !search->isBusy(); });
    ASSERT_EQ(search->results().size(), 1U);

    search->pressResult(0);
    platform.settle();

    EXPECT_EQ(navigation()->presentedViewController(), nullptr);
    EXPECT_THAT(titles(), ElementsAre(testing::_, "A", "Wanted"));
}

// A folder that goes away takes the lists below it along, whichever level it was on.
TEST_F(NavControllerTest, LeavesFoldersThatWereMovedAway)
{
    drive.tree("A/B/C/");
    launch();
    tap("A");
    tap("B");
    tap("C");
    std::filesystem::rename(drive.url("A/B").path(), drive.url("Elsewhere").path());

    EXPECT_TRUE(platform.runUntil([&] { return titles().size() == 2; }));
    EXPECT_EQ(topList()->presentedURL(), drive.url("A"));
}

// The lists that a jump makes have not read their folders when they are uncovered one after the other.
TEST_F(NavControllerTest, LeavesFoldersThatWereRemovedBeforeTheyWereRead)
{
    drive.tree("A/B/C/ deep->A/B/C");
    launch();
    tap("deep");
    ASSERT_EQ(titles().size(), 4U);
    std::filesystem::remove_all(drive.url("A").path());

    EXPECT_TRUE(platform.runUntil([&] { return titles().size() == 1; }));
    platform.settle();
    EXPECT_EQ(topList()->state(), ListState::Complete);
}

TEST_F(NavControllerTest, LogsALaunchByShortcut)
{
    EXPECT_FALSE(delegate.applicationWillFinishLaunchingWithOptions({ShortcutItem{"search", {}}}));
    EXPECT_THAT(platform.log->lines(), Contains(HasSubstr("Launched with shortcut: search")));
    EXPECT_TRUE(delegate.applicationDidFinishLaunchingWithOptions({}));
}

} // namespace
} // namespace tessel
