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

} // namespace
} // namespace tessel
