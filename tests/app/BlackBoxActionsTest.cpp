#include "tests/support/Program.h"
#include "tests/support/TemporaryDrive.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tessel {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// The built program, asked for actions as a person asks.
class BlackBoxActionsTest : public testing::Test {
protected:
    [[nodiscard]] static std::vector<std::string> arguments(const TemporaryDrive& folder)
    {
        folder.file("drive/Report.doc", "report");
        folder.file("drive/Taken.doc", "taken");
        folder.folder("home");
        return {
            "--console", "--log", "off", "--home", folder.url("home").path(), "--drive", folder.url("drive").path()};
    }
    void does(const std::string& command) { EXPECT_EQ(program.send(command).answer, "ok") << command; }
    [[nodiscard]] std::vector<std::string> screen() { return program.screen(); }
    [[nodiscard]] bool exists(std::string_view name) const { return std::filesystem::exists(folder.url(name).path()); }

    TemporaryDrive folder;
    Program program{arguments(folder)};
};

TEST_F(BlackBoxActionsTest, RenamesARow)
{
    does("action Report.doc Rename");
    EXPECT_THAT(screen(), ElementsAre("field: Report.doc", "alert: Rename Item | Enter a new name for this item.",
                                      "button: Cancel", "button: Done"));
    does("type /");
    EXPECT_THAT(screen(), AllOf(Contains("field: Report/.doc"), Contains("message: Character not allowed in filename"),
                                Contains("button: Done (disabled)")));
    EXPECT_EQ(program.send("tap Done").answer, "error: \"Done\" is disabled");
    EXPECT_EQ(program.send("return").answer, "error: the return key is disabled");

    does("clear");
    EXPECT_THAT(screen(), AllOf(Not(Contains(StartsWith("message: "))), Contains("button: Done (disabled)")));
    does("type .hidden");
    EXPECT_THAT(screen(), Contains("message: Choose a different name."));
    does("clear");
    does("type Taken");
    does("tap Done");
    EXPECT_THAT(screen(), AllOf(Contains("field: Taken"), Contains("message: Name is already taken")));

    does("clear");
    does("type \" Budget \"");
    does("return");
    does("settle");
    EXPECT_THAT(screen(), ElementsAre("title: Tessel Drive", "right: Select", "row: file | Budget.doc | 6 bytes",
                                      "row: file | Taken.doc | 5 bytes"));
    EXPECT_EQ(folder.read("drive/Budget.doc") + folder.read("drive/Taken.doc"), "reporttaken");
}

TEST_F(BlackBoxActionsTest, LeavesTheNameWhenCancelled)
{
    does("action Report.doc Rename");
    does("type 2");
    does("tap Cancel");
    EXPECT_THAT(screen(), Not(Contains(StartsWith("alert: "))));
    EXPECT_TRUE(exists("drive/Report.doc"));
}

TEST_F(BlackBoxActionsTest, DeletesARow)
{
    does("action Report.doc Delete");
    EXPECT_THAT(screen(), AllOf(Contains(HasSubstr("\"Report.doc\" will be permanently deleted from Tessel Drive")),
                                Contains("button: Delete from Tessel Drive"), Contains("button: Cancel")));
    does("tap Cancel");
    EXPECT_TRUE(exists("drive/Report.doc"));

    does("action Report.doc Delete");
    does("tap \"Delete from Tessel Drive\"");
    does("settle");
    EXPECT_THAT(screen(), ElementsAre("title: Tessel Drive", "right: Select", "row: file | Taken.doc | 5 bytes"));
    EXPECT_FALSE(exists("drive/Report.doc"));
}

TEST_F(BlackBoxActionsTest, MovesRowsIntoAFolderThatIsMadeOnTheWay)
{
    does("action Report.doc Move");
    EXPECT_THAT(screen(), AllOf(Contains("alert: Move 1 Item | Enter a name for this folder."),
                                Contains("button: Move (disabled)")))
        << "there is no folder to choose";
    does("type Work");
    does("tap Move");
    does("settle");
    EXPECT_EQ(folder.read("drive/Work/Report.doc"), "report");

    does("action Taken.doc Move");
    does("settle");
    EXPECT_THAT(screen(), ElementsAre("title: Tessel Drive | Move 1 Item", "right: Cancel",
                                      "row: folder | Work | 1 item", "toolbar: New Folder | Move (disabled)"));
    does("tap Work");
    does("tap \"New Folder\"");
    does("type Deep");
    does("tap Create");
    does("settle");
    EXPECT_THAT(screen(), ElementsAre("title: Deep | Move 1 Item", "back: Work", "right: Cancel",
                                      "toolbar: New Folder | Move", "empty: Deep"));
    does("tap Move");
    EXPECT_EQ(folder.read("drive/Work/Deep/Taken.doc"), "taken");

    does("settle");
    does("tap Work");
    does("settle");
    does("action Deep Move");
    does("settle");
    EXPECT_THAT(screen(), Contains("row: folder | Deep (disabled) | 1 item"));
    EXPECT_EQ(program.send("tap Deep").answer, "error: \"Deep\" is disabled");
    does("back");
    does("tap Cancel");
    EXPECT_TRUE(exists("drive/Work/Deep/Taken.doc"));
}

TEST_F(BlackBoxActionsTest, MovesWhatItCanAndTellsTheRest)
{
    folder.tree("drive/Work/Report.doc drive/Work/Taken.doc drive/Third.doc");
    does("settle");
    for (const auto* command :
         {"tap Select", "tap Report.doc", "tap Taken.doc", "tap Third.doc", "tap Move", "tap Work", "tap Move"})
        does(command);
    EXPECT_THAT(screen(), Contains("alert: 2 items couldn’t be moved."));
    EXPECT_TRUE(exists("drive/Work/Third.doc"));
    does("tap OK");
    does("action Report.doc Move");
    does("tap Work");
    does("tap Move");
    EXPECT_THAT(screen(), Contains("alert: An item named “Report.doc” already exists in the new location."));
    EXPECT_EQ(folder.read("drive/Report.doc") + folder.read("drive/Work/Report.doc"), "report");
}

/// The same on the drive that the program makes at its first start, which has libraries.
class BlackBoxLibrariesTest : public testing::Test {
protected:
    void does(const std::vector<std::string>& commands)
    {
        for (const auto& command : commands)
            EXPECT_EQ(program.send(command).answer, "ok") << command;
        program.send("settle");
    }
    [[nodiscard]] std::vector<std::string> screen() { return program.screen(); }

    TemporaryDrive folder;
    Program program{{"--console", "--log", "off", "--home", folder.url("home").path()}};
};

TEST_F(BlackBoxLibrariesTest, MovesAcrossContainersAsDeepAsTheyAllow)
{
    does({"tap Documents"});
    does({"action Projects Move"});
    EXPECT_THAT(screen(), AllOf(Contains("title: Documents | Move 1 Item"), Contains(HasSubstr("Projects (disabled)")),
                                Contains("toolbar: New Folder | Move (disabled)")));
    does({"back"});
    does({"tap Quillpad"}); // which has folders at its top level only
    EXPECT_THAT(screen(), ElementsAre("title: Quillpad | Move 1 Item", "back: Tessel Drive", "right: Cancel",
                                      "toolbar: New Folder (disabled) | Move", "empty: Quillpad"));
    does({"tap Move"});
    EXPECT_TRUE(std::filesystem::exists(folder.url("home/Mobile Documents/orvane~Quillpad/Documents/Projects").path()));
    EXPECT_THAT(screen(), Not(Contains(HasSubstr("Projects"))));

    does({"action Plan.txt Move", "back"});
    does({"tap Quillpad"});
    does({"tap Projects", "tap Move"});
    EXPECT_TRUE(std::filesystem::exists(
        folder.url("home/Mobile Documents/orvane~Quillpad/Documents/Projects/Plan.txt").path()));
}

TEST_F(BlackBoxLibrariesTest, DeletesLibrariesAndNothingElseWithThem)
{
    does({"settle", "tap Select", "tap Quillpad", "tap Welcome.txt"});
    EXPECT_THAT(screen(), Contains(HasSubstr("Delete (disabled)")));
    does({"tap Welcome.txt", "tap Lookbook", "tap Delete"});
    EXPECT_THAT(screen(), Contains(StartsWith("sheet: 2 items will be permanently deleted")));
    does({"tap \"Delete from Tessel Drive\""});
    EXPECT_THAT(screen(), AllOf(Contains("right: Select"), Contains(StartsWith("row: file | Welcome.txt")),
                                Not(Contains(StartsWith("row: library")))));
    EXPECT_FALSE(std::filesystem::exists(folder.url("home/Mobile Documents/orvane~Lookbook/Documents").path()));

    does({"action Documents Move"});
    EXPECT_THAT(screen(), Contains("alert: This can’t be done with the item."));
}

} // namespace
} // namespace tessel
