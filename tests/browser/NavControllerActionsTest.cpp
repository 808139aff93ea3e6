#include "app/entry/AppDelegate.h"
#include "browser/NavController.h"
#include "files/FilenamePrompt.h"
#include "platform/base/Platform.h"
#include "platform/ui/AlertController.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tessel {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;

constexpr const char* kDelete =
    "-[NavController showWarningAndDeleteURLs:usingView:withDocumentListController:finishedCompletion:]";
constexpr const char* kPerform =
    "-[NavController documentListController:performAction:URL:originatingView:completion:]";

/// What the user asks of a row, on a drive of the test's own.
class NavControllerActionsTest : public testing::Test {
protected:
    NavControllerActionsTest()
    {
        application.launch({});
        platform.settle();
        platform.log->clear();
    }
    [[nodiscard]] std::shared_ptr<NavController> navigation() const
    {
        return std::dynamic_pointer_cast<NavController>(delegate.rootWindow->rootViewController());
    }
    void perform(ListAction action, const URL& url)
    {
        navigation()->getTopDocumentListController()->performAction(action, url, nullptr, [this] { ++completions; });
    }
    [[nodiscard]] std::shared_ptr<AlertController> alert() const
    {
        return std::dynamic_pointer_cast<AlertController>(navigation()->visibleViewController());
    }
    /// The title of the alert on screen.
    [[nodiscard]] std::string told() const { return alert() ? alert()->title() : "nothing"; }
    void choose(std::size_t action)
    {
        ASSERT_NE(alert(), nullptr);
        EXPECT_TRUE(alert()->choose(alert()->actions()[action]));
    }
    [[nodiscard]] bool exists(std::string_view name) const { return std::filesystem::exists(drive.url(name).path()); }
    static std::string line(const char* level, const std::string& function, const std::string& message)
    {
        return "(TSD)[" + std::string(level) + "] " + function + " (*) " + message;
    }

    InstalledPlatform platform{{"orvane.Lookbook", "Lookbook"}, {"orvane.Paint", "Paint"}};
    const TemporaryDrive& drive = platform.drive;
    AppDelegate delegate;
    Application application{delegate, platform.stateStore()};
    int completions = 0;
};

TEST_F(NavControllerActionsTest, OffersWhatItCanDo)
{
    EXPECT_THAT(navigation()->getTopDocumentListController()->actions(),
                ElementsAre(ListAction::Pop, ListAction::Info, ListAction::Rename, ListAction::Share, ListAction::Move,
                            ListAction::Delete));
    perform(ListAction::More, drive.url());
    EXPECT_EQ(completions, 0);
    navigation()->documentListControllerPerformAction(*navigation()->getTopDocumentListController(), 9, drive.url(),
                                                      nullptr, [this] { ++completions; });
    EXPECT_EQ(completions, 1);
    EXPECT_THAT(platform.log->lines(),
                ElementsAre(line("INFO", kPerform, "================= DLC Action More"),
                            line("ERROR", kPerform, "performAction:1 -- More is deprecated, unexpected value"),
                            line("ERROR", kPerform, "performAction:9 -- unexpected value")));
}

TEST_F(NavControllerActionsTest, DeletesAfterTheUserAgreed)
{
    const auto plan = drive.file("orvane~Quillbox/Plan.txt");
    perform(ListAction::Delete, plan);
    EXPECT_THAT(alert()->message(), HasSubstr("\"Plan.txt\" will be permanently deleted"));
    choose(1);
    EXPECT_TRUE(exists("orvane~Quillbox/Plan.txt"));
    EXPECT_EQ(completions, 1);
    EXPECT_EQ(alert(), nullptr);
    EXPECT_EQ(platform.services().log.activityLabel(), "Delete was Cancelled (nav)");

    perform(ListAction::Delete, plan);
    choose(0);
    EXPECT_FALSE(exists("orvane~Quillbox/Plan.txt"));
    EXPECT_EQ(completions, 2);
    EXPECT_EQ(alert(), nullptr);
    const auto block = std::string(kDelete) + "_block_invoke";
    EXPECT_THAT(platform.log->lines(),
                IsSupersetOf({line("INFO", kPerform, "================= DLC Action Delete"),
                              line("INFO", block, "================= Delete was Cancelled (nav)"),
                              line("INFO", block, "================= Delete was Confirmed (nav)"),
                              line("INFO", block, "Deleting item " + plan.absoluteString())}));
}

TEST_F(NavControllerActionsTest, TriesEachItemAndTellsWhatStayed)
{
    const auto one = drive.file("orvane~Quillbox/1"), two = drive.file("orvane~Quillbox/2"),
               three = drive.file("orvane~Quillbox/3");
    const auto vanish = [&](const std::vector<URL>& urls, const std::vector<URL>& gone) {
        navigation()->showWarningAndDeleteURLs(urls, nullptr, nullptr, [this] { completions += alert() == nullptr; });
        for (const auto& url : gone)
            std::filesystem::remove(url.path());
        choose(0);
    };
    vanish({one, two, three}, {one, two});
    EXPECT_EQ(completions, 1) << "before the failures are told";
    EXPECT_FALSE(exists("orvane~Quillbox/3"));
    EXPECT_EQ(told(), "2 items couldn’t be deleted.");
    choose(0);

    drive.file("orvane~Quillbox/1");
    drive.file("orvane~Quillbox/2");
    vanish({one, two}, {two});
    EXPECT_EQ(told(), "The operation was cancelled.");
    EXPECT_THAT(platform.log->lines(), Contains(HasSubstr("Failed to delete URL " + two.absoluteString() + ": The ")));
}

TEST_F(NavControllerActionsTest, RefusesWhatStaysInTheDrive)
{
    const auto documents = drive.folder("orvane~Quillbox/Documents"), plan = drive.file("orvane~Quillbox/Plan.txt");
    const auto library = drive.url("orvane~Lookbook/Documents");
    const auto refused = [&](const std::vector<URL>& urls) {
        platform.log->clear();
        navigation()->showWarningAndDeleteURLs(urls, nullptr, nullptr, [this] { ++completions; });
        const auto answer = told();
        navigation()->dismiss(Animated::No);
        return answer;
    };
    EXPECT_EQ(refused({plan, documents}), "This can’t be done with the item.");
    EXPECT_EQ(platform.log->lines()[0],
              line("WARNING", kDelete,
                   "Not deleting special folder: (" + plan.absoluteString() + ", " + documents.absoluteString() + ")"));
    EXPECT_EQ(refused({plan, library}), "nothing");
    EXPECT_THAT(platform.log->lines(),
                ElementsAre(AllOf(HasSubstr("[ERROR]"), HasSubstr("Not Deleting: mix of containers and items: ("))));
    EXPECT_EQ(completions, 2);

    perform(ListAction::Rename, documents);
    EXPECT_EQ(told(), "This can’t be done with the item.");
    EXPECT_EQ(platform.log->lines().back(), line("WARNING", "-[NavController showRenamePrompt:]",
                                                 "Not renaming special folder: " + documents.absoluteString()));
    navigation()->dismiss(Animated::No);
    perform(ListAction::Rename, library);
    EXPECT_EQ(told(), "This can’t be done with the item.");
    navigation()->dismiss(Animated::No);
    perform(ListAction::Move, library);
    EXPECT_EQ(told(), "This can’t be done with the item.");
    EXPECT_TRUE(exists("orvane~Quillbox/Plan.txt") && exists("orvane~Lookbook/Documents"));
}

TEST_F(NavControllerActionsTest, DeletesLibrariesWithAllThatTheyHold)
{
    const auto sketch = drive.file("orvane~Lookbook/Documents/Deep/Sketch");
    const auto plan = drive.file("orvane~Quillbox/Plan.txt");
    const auto lookbook = drive.url("orvane~Lookbook/Documents"), paint = drive.url("orvane~Paint/Documents");
    platform.settle();
    const auto list = navigation()->getTopDocumentListController();
    navigation()->beginEditMode();
    list->setSelectedItemURLs({lookbook, paint});
    navigation()->barButtonDeleteItem->press();
    EXPECT_THAT(alert()->message(), HasSubstr("2 items will be permanently deleted"));
    choose(0);
    EXPECT_FALSE(navigation()->editMode);
    EXPECT_FALSE(exists("orvane~Lookbook/Documents") || exists("orvane~Paint/Documents"));
    EXPECT_EQ(told(), "nothing");
    EXPECT_TRUE(platform.runUntil([&] { return list->containedItemURLs() == std::vector{plan}; }))
        << "their rows are gone";
    EXPECT_THAT(platform.log->lines(),
                IsSupersetOf({HasSubstr("Pressed Delete after selecting 2 items: (" + lookbook.absoluteString()),
                              HasSubstr("Deleting container orvane.Lookbook")}));

    const auto drivesOwn = drive.url("orvane~Quillbox");
    navigation()->showWarningAndDeleteURLs({drivesOwn}, nullptr, nullptr, {});
    choose(0);
    EXPECT_TRUE(exists("orvane~Quillbox/Plan.txt"));
    EXPECT_NE(told(), "nothing") << "one failure that nobody can explain";
    EXPECT_THAT(platform.log->lines(),
                Contains(AllOf(HasSubstr("[ERROR]"), HasSubstr("NOT Deleting root container orvane."))));
}

TEST_F(NavControllerActionsTest, SharesUnderTheNameThatPeopleKnow)
{
    int before = 0;
    const auto share = [&](const URL& url) {
        navigation()->getTopDocumentListController()->performAction(ListAction::Share, url, nullptr,
                                                                    [&] { before += alert() ? 0 : 1; });
        const auto title = told();
        navigation()->dismiss(Animated::No);
        return title;
    };
    EXPECT_EQ(share(drive.file("orvane~Quillbox/Plan.txt")), "Plan.txt");
    EXPECT_EQ(share(drive.url("orvane~Lookbook/Documents")), "Lookbook");
    EXPECT_EQ(before, 2) << "completions come before the sheet";
    EXPECT_THAT(platform.log->lines(),
                IsSupersetOf({HasSubstr("================= DLC Action Share (share sheet)"),
                              HasSubstr("================= Show Share Sheet (nav)"),
                              HasSubstr("showDIC: " + drive.url("orvane~Quillbox/Plan.txt").absoluteString())}));
}

TEST_F(NavControllerActionsTest, RenamesUntilTheNameIsFree)
{
    const auto plan = drive.file("orvane~Quillbox/Plan.txt", "plan");
    drive.file("orvane~Quillbox/Taken.txt", "taken");
    perform(ListAction::Rename, plan);
    EXPECT_EQ(completions, 1) << "once the prompt is shown";
    platform.settle();
    const auto field = alert()->textFields().front();
    EXPECT_EQ(field->text(), "Plan.txt");

    field->setTextByUser("Taken");
    field->pressReturn();
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(navigation()->folderPromptAlert->errMsgViewController->messageLabel->text(), "Name is already taken");
    field->setTextByUser(" Trip ");
    field->pressReturn();
    EXPECT_EQ(alert(), nullptr);
    EXPECT_EQ(drive.read("orvane~Quillbox/Trip.txt") + drive.read("orvane~Quillbox/Taken.txt"), "plantaken");
    EXPECT_EQ(platform.services().log.activityLabel(), "Rename entry confirmed (nav)");

    perform(ListAction::Rename, plan);
    EXPECT_EQ(alert(), nullptr) << "it is gone";
}

} // namespace
} // namespace tessel
