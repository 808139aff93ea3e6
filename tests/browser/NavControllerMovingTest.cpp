#include "app/entry/AppDelegate.h"
#include "browser/NavController.h"
#include "files/FilenamePrompt.h"
#include "platform/base/Platform.h"
#include "platform/ui/AlertController.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

namespace tessel {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;

/// Moves on a drive without libraries: nothing can leave it.
class NavControllerMovingTest : public testing::Test {
protected:
    /// Launches the program on this content.
    void launch(std::string_view content)
    {
        drive.tree(content);
        application.launch({});
        platform.settle();
        platform.log->clear();
    }
    [[nodiscard]] std::shared_ptr<NavController> navigation() const
    {
        return std::dynamic_pointer_cast<NavController>(delegate.rootWindow->rootViewController());
    }
    [[nodiscard]] std::shared_ptr<AlertController> alert() const
    {
        return std::dynamic_pointer_cast<AlertController>(navigation()->visibleViewController());
    }
    [[nodiscard]] std::string told() const { return alert() ? alert()->title() : "nothing"; }
    [[nodiscard]] std::string promptMessage() const
    {
        return navigation()->folderPromptAlert->errMsgViewController->messageLabel->text();
    }
    void name(const std::string& text)
    {
        ASSERT_NE(alert(), nullptr);
        platform.settle();
        alert()->textFields().front()->setTextByUser(text);
        alert()->choose(alert()->actions().back());
    }
    [[nodiscard]] std::shared_ptr<DocumentTargetSelectionController> picker() const
    {
        return std::dynamic_pointer_cast<DocumentTargetSelectionController>(navigation()->presentedViewController());
    }
    void press(const std::string& title)
    {
        const auto& items = picker()->topViewController()->toolbarItems();
        const auto item = std::ranges::find(items, title, &BarButtonItem::title);
        ASSERT_NE(item, items.end());
        EXPECT_TRUE((*item)->press()) << title;
    }
    void select(const std::vector<URL>& urls)
    {
        navigation()->beginEditMode();
        navigation()->getTopDocumentListController()->setSelectedItemURLs(urls);
    }
    [[nodiscard]] bool exists(std::string_view name) const { return std::filesystem::exists(drive.url(name).path()); }

    InstalledPlatform platform;
    const TemporaryDrive& drive = platform.drive;
    AppDelegate delegate;
    Application application{delegate, platform.stateStore()};
};

TEST_F(NavControllerMovingTest, MakesAFolderOfAFreeName)
{
    launch("Taken.txt");
    navigation()->beginEditMode();
    navigation()->barButtonNewFolder->press();
    EXPECT_EQ(told(), "New Folder");
    EXPECT_EQ(alert()->actions().back()->title(), "Create");
    EXPECT_FALSE(alert()->actions().back()->enabled()) << "without a name";
    name("Taken.txt");
    EXPECT_EQ(promptMessage(), "Name is already taken");
    name(" Plans ");
    EXPECT_EQ(told(), "nothing");
    EXPECT_TRUE(std::filesystem::is_directory(drive.url("Plans").path()));
    const auto line = [](const std::string& message) { return AllOf(HasSubstr("[INFO]"), HasSubstr(message)); };
    EXPECT_THAT(platform.log->lines(),
                IsSupersetOf({line("promtForNewFolderAndCreate:] (*) ================= Pressed NewFolder"),
                              line("itemsToMove:] (*) ================= Show New Folder Prompt (nav, during move)"),
                              line("itemsToMove:]_block_invoke (*) ================= New Folder name entry Confirmed"),
                              line("itemsToMove:]_block_invoke (*) New folder entered: Taken.txt"),
                              line("Item exists at path: " + drive.url("Taken.txt").absoluteString())}));
}

TEST_F(NavControllerMovingTest, HasAFolderMadeWhereThereIsNoneToMoveTo)
{
    launch("1 2 3");
    const std::vector items = {drive.url("1"), drive.url("2"), drive.url("3")};
    select(items);
    navigation()->barButtonMoveItem->press();
    EXPECT_FALSE(navigation()->editMode);
    EXPECT_EQ(told(), "Move 3 Items");
    EXPECT_EQ(alert()->actions().back()->title(), "Move");
    std::filesystem::remove(items[0].path());
    std::filesystem::remove(items[2].path());
    name("Trip");
    EXPECT_EQ(promptMessage(), "2 items couldn’t be moved.") << "the prompt stays";
    EXPECT_TRUE(exists("Trip/2"));

    navigation()->dismiss(Animated::No);
    drive.tree("1 3");
    std::filesystem::remove_all(drive.url("Trip").path());
    navigation()->showNewFolderPromptDuringMove(drive.url(), {items[0], drive.url("gone")});
    name("Trip");
    EXPECT_THAT(promptMessage(), testing::Not(testing::AnyOf("", HasSubstr("items")))) << "the one error in words";
    EXPECT_TRUE(exists("Trip/1"));
    navigation()->dismiss(Animated::No);
    navigation()->showNewFolderPromptDuringMove(drive.url(), {items[2]});
    name("Other");
    EXPECT_EQ(told(), "nothing");
    EXPECT_TRUE(exists("Other/3"));

    navigation()->showNewFolderPromptDuringMove(std::nullopt, {});
    EXPECT_EQ(told(), "nothing");
    EXPECT_THAT(platform.log->lines().back(), AllOf(HasSubstr("[WARNING]"), HasSubstr("dlc.presentedURL is nil")));
}

TEST_F(NavControllerMovingTest, MovesToTheChosenFolder)
{
    launch("Plan.txt Work/ Work/Deep/");
    int completions = 0;
    navigation()->getTopDocumentListController()->performAction(ListAction::Move, drive.url("Plan.txt"), nullptr,
                                                                [&] { completions += picker() ? 1 : 100; });
    EXPECT_EQ(completions, 1) << "when the picker is shown";
    picker()->showFolder(drive.url("Work"));
    press("Move");
    EXPECT_EQ(picker(), nullptr);
    EXPECT_EQ(told(), "nothing");
    EXPECT_TRUE(exists("Work/Plan.txt"));
    platform.settle();

    const auto moved = drive.url("Work/Plan.txt").absoluteString();
    navigation()->showMoveTargetForItems({drive.url("Work")}, drive.url());
    platform.settle();
    picker()->topViewController()->navigationItem.rightItems().front()->press();
    EXPECT_EQ(picker(), nullptr) << "cancelled";
    EXPECT_TRUE(exists("Work/Plan.txt"));
    EXPECT_THAT(platform.log->lines(),
                IsSupersetOf({HasSubstr("================= DLC Action Move"), HasSubstr("Move action: file://"),
                              HasSubstr("Prompting for Move Target, 1 items"),
                              HasSubstr("_block_invoke (*) Presented moveTarget"),
                              HasSubstr("================= Move Target Selected (nav)"),
                              HasSubstr("MoveTarget = " + drive.url("Work").absoluteString())}));
}

TEST_F(NavControllerMovingTest, MakesAFolderWithinThePicker)
{
    launch("Plan.txt Work/");
    navigation()->showMoveTargetForItems({drive.url("Plan.txt")}, drive.url());
    press("New Folder");
    name("Work");
    EXPECT_EQ(promptMessage(), "Name is already taken");
    name("Fresh");
    EXPECT_EQ(picker()->topViewController()->title(), "Fresh");
    press("Move");
    EXPECT_TRUE(exists("Fresh/Plan.txt"));
}

TEST_F(NavControllerMovingTest, TriesEachItemAndTellsWhatStayed)
{
    launch("1 2 3 Work/1 Work/2");
    const std::vector items = {drive.url("1"), drive.url("2"), drive.url("3")};
    navigation()->moveItemsToDirectoryAndShowErrors(items, drive.url("Work"));
    EXPECT_EQ(told(), "2 items couldn’t be moved.");
    EXPECT_TRUE(exists("1") && exists("2") && exists("Work/3"));
    navigation()->dismiss(Animated::No);
    navigation()->moveItemsToDirectoryAndShowErrors({items[0]}, drive.url("Work"));
    EXPECT_EQ(told(), "An item named “1” already exists in the new location.");
}

TEST_F(NavControllerMovingTest, LeavesSpecialFoldersWhereTheyAre)
{
    launch("Documents/ Plan.txt");
    navigation()->showMoveTargetForItems({drive.url("Plan.txt"), drive.url("Documents")}, drive.url());
    EXPECT_EQ(told(), "This can’t be done with the item.");
    EXPECT_THAT(platform.log->lines(),
                ElementsAre(AllOf(HasSubstr("[WARNING]"), HasSubstr("Not moving items with special folder: ("))));
}

TEST_F(NavControllerMovingTest, TakesWhatIsDroppedByTheSameRules)
{
    const TemporaryDrive elsewhere;
    const auto stranger = elsewhere.file("Letter.txt", "letter");
    launch("Documents/ Plan.txt Work/Deep/");
    const auto list = navigation()->getTopDocumentListController();
    const auto rowOf = [&](std::string_view name) {
        const auto urls = list->containedItemURLs();
        return static_cast<std::size_t>(std::ranges::find(urls, drive.url(name)) - urls.begin());
    };
    const auto plan = drive.url("Plan.txt"), work = drive.url("Work");
    EXPECT_EQ(list->folderForDrop({plan}, rowOf("Work")), work);
    EXPECT_EQ(list->folderForDrop({plan}, std::nullopt), std::nullopt) << "it is there already";
    EXPECT_EQ(list->folderForDrop({stranger}, std::nullopt), drive.url());
    EXPECT_EQ(list->folderForDrop({stranger}, rowOf("Plan.txt")), std::nullopt) << "no folder";
    EXPECT_EQ(list->folderForDrop({work}, rowOf("Work")), std::nullopt);
    EXPECT_EQ(list->folderForDrop({drive.url("Documents")}, rowOf("Work")), std::nullopt);
    EXPECT_EQ(list->folderForDrop({}, rowOf("Work")), std::nullopt);

    select({plan, work});
    EXPECT_THAT(list->itemsDraggedWith(rowOf("Plan.txt")), ElementsAre(plan, work));
    EXPECT_THAT(list->itemsDraggedWith(rowOf("Documents")), ElementsAre(drive.url("Documents")));
    list->drop({plan, stranger}, work);
    EXPECT_FALSE(navigation()->editMode);
    EXPECT_EQ(drive.read("Work/Letter.txt"), "letter");
    EXPECT_TRUE(exists("Work/Plan.txt"));
    EXPECT_FALSE(std::filesystem::exists(stranger.path()));
}

} // namespace
} // namespace tessel
