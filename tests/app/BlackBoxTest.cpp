#include "tests/support/Program.h"
#include "tests/support/TemporaryDrive.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <unistd.h>

namespace fs = std::filesystem;

namespace tessel {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using Lines = std::vector<std::string>;

constexpr uid_t kNobody = 65534;

/// The built program over a drive and a home of its own, used as a person would use it.
class BlackBoxTest : public testing::Test {
protected:
    BlackBoxTest()
    {
        folder.folder("home");
        folder.folder("drive");
    }

    [[nodiscard]] Lines arguments(Lines more = {}) const
    {
        Lines all = {"--console", "--log", "off", "--home", folder.url("home").path(), "--drive", drivePath()};
        all.insert(all.end(), more.begin(), more.end());
        return all;
    }

    [[nodiscard]] std::string drivePath() const { return folder.url("drive").path(); }

    /// Whether the screen comes to fulfil the condition within a second.
    static bool soon(Program& program, const std::function<bool(const Lines&)>& condition)
    {
        const auto deadline = std::chrono::steady_clock::now() + 1s;
        while (!condition(program.screen())) {
            if (std::chrono::steady_clock::now() > deadline)
                return false;
            program.send("wait 0.01");
        }
        return true;
    }

    static std::function<bool(const Lines&)> has(const std::string& line)
    {
        return [line](const Lines& lines) { return std::ranges::find(lines, line) != lines.end(); };
    }

    TemporaryDrive folder;
};

TEST_F(BlackBoxTest, WalksDownAndBack)
{
    folder.tree("drive/Projects/Bridge/ drive/Projects/Bridge/Plan.txt drive/Projects/Notes.txt");
    Program program(arguments());

    EXPECT_THAT(program.screen(),
                ElementsAre("title: Tessel Drive", "right: Select", "row: folder | Projects | 2 items"));
    EXPECT_EQ(program.send("tap Projects").answer, "ok");
    EXPECT_EQ(program.send("tap Bridge").answer, "ok");
    EXPECT_THAT(program.screen(), AllOf(Contains("title: Bridge"), Contains("back: Projects"),
                                        Contains(StartsWith("row: file | Plan.txt"))));

    EXPECT_EQ(program.send("back").answer, "ok");
    EXPECT_EQ(program.send("tap \"Tessel Drive\"").answer, "ok");
    EXPECT_THAT(program.screen(), AllOf(Contains("title: Tessel Drive"), Not(Contains(StartsWith("back: ")))));
    EXPECT_EQ(program.send("quit").answer, "ok");
    const auto end = program.finish();
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.error, "");
}

TEST_F(BlackBoxTest, RefusesWhatIsNotThereAndChangesNothing)
{
    folder.tree("drive/Projects/");
    Program program(arguments());
    const auto before = program.screen();

    EXPECT_EQ(program.send("back").answer, "error: there is no back button");
    EXPECT_EQ(program.send("tap Nowhere").answer, "error: nothing called \"Nowhere\" on the screen");
    EXPECT_EQ(program.send("resize 0 10").answer.substr(0, 7), "error: ");
    program.write(std::string(3 << 20, 'x'));
    EXPECT_EQ(program.send("").answer, "error: the line is too long");

    EXPECT_EQ(program.screen(), before);
}

// Names that a shell, a terminal or a list could stumble over; each must show on one line and lead to its folder.
TEST_F(BlackBoxTest, OpensFoldersWithOddNames)
{
    const std::pair<std::string, std::string> cases[] = {
        {"two words", R"("two words")"},
        {R"(say "hi" \ there)", R"("say \"hi\" \\ there")"},
        {"#1", R"("#1")"},
        {" lead", R"(" lead")"},
        {"a\nb", "a␊b"},
        {"bad\xff", "bad\xEF\xBF\xBD"},
        {"3", "3"},
    };
    for (const auto& [name, typed] : cases)
        folder.file("drive/" + name + "/inside.txt");
    Program program(arguments());
    for (const auto& [name, typed] : cases) {
        EXPECT_EQ(program.send("tap " + typed).answer, "ok") << name;
        EXPECT_THAT(program.send("path inside.txt").lines.front(), StartsWith("path: " + drivePath())) << name;
        EXPECT_EQ(program.send("back").answer, "ok") << name;
    }
}

TEST_F(BlackBoxTest, ShowsAnUnreadableFolderAsFailedAndNeverAsEmpty)
{
    folder.tree("drive/Secret/ drive/Secret/Plan.txt drive/Void/");
    std::optional<uid_t> user;
    if (::geteuid() == 0) {
        user = kNobody;
        for (const auto* const path : {"", "home", "drive", "drive/Void"})
            ASSERT_EQ(::chown(folder.url(path).path().c_str(), kNobody, kNobody), 0);
    }
    fs::permissions(folder.url("drive/Secret").path(), user ? fs::perms::owner_all : fs::perms::none);
    Program program(arguments(), user);

    program.send("tap Secret");
    EXPECT_THAT(program.screen(), ElementsAre("title: Secret", "back: Tessel Drive", "right: Select",
                                              "failed: Secret | Permission denied"));
    program.send("back");
    program.send("tap Void");
    EXPECT_THAT(program.screen(), ElementsAre("title: Void", "back: Tessel Drive", "right: Select", "empty: Void"));
}

TEST_F(BlackBoxTest, ShowsTheDriveOnlyWhileSomebodyIsSignedIn)
{
    folder.tree("drive/Projects/");
    Program program(arguments());
    program.send("tap Projects");

    EXPECT_EQ(program.send("sign-out").answer, "ok");
    EXPECT_THAT(program.screen(), AllOf(Contains(StartsWith("unavailable: ")), Not(Contains(StartsWith("row: ")))));
    EXPECT_EQ(program.send("sign-in anna").answer, "ok");
    EXPECT_THAT(program.screen(),
                AllOf(Contains("title: Tessel Drive"), Contains(StartsWith("row: folder | Projects"))));
}

TEST_F(BlackBoxTest, FollowsOtherProgramsChanges)
{
    folder.tree("drive/Projects/Old.txt");
    Program program(arguments());
    program.send("tap Projects");

    folder.file("drive/Projects/New.txt", "12345");
    EXPECT_TRUE(soon(program, has("row: file | New.txt | 5 bytes")));
    fs::rename(folder.url("drive/Projects/New.txt").path(), folder.url("drive/Projects/Newer.txt").path());
    fs::remove(folder.url("drive/Projects/Old.txt").path());
    EXPECT_TRUE(soon(program, [](const Lines& lines) {
        return lines ==
               Lines{"title: Projects", "back: Tessel Drive", "right: Select", "row: file | Newer.txt | 5 bytes"};
    }));

    fs::remove_all(folder.url("drive/Projects").path());
    EXPECT_TRUE(soon(program, [](const Lines& lines) {
        return lines == Lines{"title: Tessel Drive", "right: Select", "empty: Tessel Drive"};
    }));
}

TEST_F(BlackBoxTest, FindsBelowTheShownFolder)
{
    folder.tree("drive/Projects/Bridge/Report.txt drive/Plan.txt");
    Program program(arguments());

    EXPECT_EQ(program.send("search report").answer, "ok");
    EXPECT_THAT(program.screen(), AllOf(Contains("search: report"), Contains(StartsWith("row: file | Report.txt")),
                                        Not(Contains(HasSubstr("Plan.txt")))));
    EXPECT_EQ(program.send("search \"\"").answer, "ok");
    EXPECT_THAT(program.screen(), AllOf(Not(Contains(StartsWith("search: "))), Contains(HasSubstr("Plan.txt"))));
}

TEST_F(BlackBoxTest, PrintsTheFirstScreenWhenThereIsNoCommand)
{
    folder.tree("drive/Projects/");
    EXPECT_THAT(Program::run(arguments(), "# nothing\n\n").output,
                StartsWith("title: Tessel Drive\nright: Select\nrow: folder | Projects | 0 items\nstatus: 1 item"));
    EXPECT_THAT(Program::run(arguments({"--json"})).output,
                StartsWith("{\"title\": \"Tessel Drive\", \"right\": [\"Select\"], "
                           "\"row\": [\"folder | Projects | 0 items\"], \"status\": \"1 item"));
}

TEST_F(BlackBoxTest, EndsQuietlyWhenNobodyReadsItsOutput)
{
    Program program(arguments());
    EXPECT_EQ(program.send("wait 0").answer, "ok");
    program.closeOutput();
    program.write("screen\n");
    const auto end = program.finish();
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.error, "");
}

TEST_F(BlackBoxTest, RefusesBadArgumentsInOneLine)
{
    const std::vector<Lines> cases = {
        {"--frobnicate"},
        {"--home"},
        {"--console", "--log-level", "shouting", "--home", folder.url("home").path()},
        {"--console", "--home", folder.url("home").path(), "--drive", folder.url("nowhere").path()},
        {"--console", "--home", folder.file("file", "no folder").path()},
    };
    for (const auto& wrong : cases) {
        const auto result = Program::run(wrong);
        EXPECT_EQ(result.status, 2) << testing::PrintToString(wrong);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(std::ranges::count(result.error, '\n'), 1) << result.error;
    }
}

TEST_F(BlackBoxTest, CopiesTheLogWhileAsked)
{
    Program program(arguments());
    program.send("log on debug");
    program.send("sign-out");
    program.send("log off");
    program.send("sign-in anna");
    const auto error = program.finish().error;
    EXPECT_THAT(error, HasSubstr("Tessel is not enabled"));
    EXPECT_THAT(error, Not(HasSubstr("Tessel is enabled")));
}

} // namespace
} // namespace tessel
