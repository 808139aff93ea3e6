#include "tests/window/WindowFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <map>

namespace fs = std::filesystem;

namespace tessel {
namespace {

using testing::ElementsAre;

class WindowTest : public WindowFixture {};

/// How a row's name for assistive technology begins when the console prints it so.
std::string spokenRow(const std::string& consoleRow)
{
    static const std::map<std::string, std::string> kinds = {
        {"file", "Document"}, {"folder", "Folder"}, {"package", "Package"}, {"link", "Link"}, {"library", "Library"}};
    Lines parts;
    for (std::size_t start = 0, end = 0; end != consoleRow.npos; start = end + 3) {
        end = consoleRow.find(" | ", start);
        parts.push_back(consoleRow.substr(start, end - start));
    }
    auto spoken = parts.at(1) + ", " + kinds.at(parts.at(0));
    if (parts.size() > 2 && !parts[2].starts_with("tags") && !parts[2].starts_with("in the cloud"))
        spoken += ", " + parts[2];
    return spoken;
}

TEST_F(WindowTest, ShowsWhatTheConsoleShows)
{
    std::map<std::string, Lines> expected;
    {
        Program console({"--console", "--log", "off", "--home", folder.url("home").path()});
        for (const std::string name : {"", "Documents"})
            for (const auto& line : console.send(name.empty() ? "screen" : "tap " + name).lines)
                if (line.starts_with("row: "))
                    expected[name].push_back(spokenRow(line.substr(5)));
        for (const auto& line : console.send("screen").lines)
            if (line.starts_with("row: "))
                expected["Documents"].push_back(spokenRow(line.substr(5)));
        console.send("back"); // where the next start comes back to
        console.finish();
    }
    ASSERT_GT(expected["Documents"].size(), 10U);

    auto program = open();
    use(program, "resize 900 1200");
    const auto showsAll = [&](const Lines& wanted) {
        return soon([&] {
            const auto shown = linesOf(program, "ListItem");
            return std::ranges::equal(shown, wanted,
                                      [](const auto& line, const auto& start) { return line.starts_with(start); });
        });
    };
    EXPECT_TRUE(showsAll(expected[""])) << testing::PrintToString(linesOf(program, "ListItem"));
    use(program, "tap Documents");
    EXPECT_TRUE(showsAll(expected["Documents"])) << testing::PrintToString(linesOf(program, "ListItem"));
}

TEST_F(WindowTest, KeepsItsPlaceInAListThatItComesBackTo)
{
    for (int number = 100; number < 160; ++number)
        folder.file("drive/Folder " + std::to_string(number) + "/Inside.txt");
    auto program = openDrive();
    use(program, "resize 375 667");
    ASSERT_TRUE(shows(program, "Folder 100"));
    use(program, "flick -150");
    const auto before = linesOf(program, "ListItem");
    const auto names = rows(program);
    ASSERT_GT(names.size(), 6U);
    EXPECT_GT(names[2], "Folder 103");

    use(program, "tap " + names[4]);
    EXPECT_TRUE(hasRows(program, {"Inside.txt"}));
    folder.file("drive/Folder 100b/Inside.txt"); // a row above what is on the screen
    use(program, "tap Back to Tessel Drive");
    EXPECT_TRUE(soon([&] { return linesOf(program, "ListItem") == before; }))
        << testing::PrintToString(linesOf(program, "ListItem")) << "\n instead of\n"
        << testing::PrintToString(before);
}

TEST_F(WindowTest, FindsBelowTheFolderAndOpensTheHit)
{
    folder.tree("drive/Work/Deep/Target/Inside.txt drive/Other.txt");
    auto program = openDrive();
    ASSERT_TRUE(hasRows(program, {"Other.txt", "Work"}));
    use(program, "key Ctrl+F");
    EXPECT_THAT(program.send("focus").lines, ElementsAre("Search"));
    use(program, "type targ");
    EXPECT_TRUE(hasRows(program, {"Target"}));
    use(program, "tap Target");
    EXPECT_TRUE(hasRows(program, {"Inside.txt"}));
    use(program, "key Escape");
    EXPECT_TRUE(shows(program, "Pane | Deep"));
}

TEST_F(WindowTest, RemembersItsSizeAndLookWhenItIsEnded)
{
    folder.tree("drive/One.txt drive/Two.txt");
    const auto places = [](Program& program) { return linesOf(program, "ListItem"); };
    Lines grid;
    {
        auto program = openDrive();
        use(program, "resize 640 700");
        ASSERT_TRUE(hasRows(program, {"One.txt", "Two.txt"}));
        const auto list = places(program);
        use(program, "tap Show as Thumbnails");
        ASSERT_TRUE(soon([&] { return places(program) != list && places(program).size() == 2; }));
        use(program, "rest");
        grid = places(program);
        program.signal(SIGTERM);
        const auto ended = program.finish();
        EXPECT_EQ(ended.status, 0);
        EXPECT_EQ(ended.error, "");
    }
    auto program = openDrive();
    EXPECT_TRUE(shows(program, "Pane | Tessel Drive | 0 0 640 700"));
    EXPECT_TRUE(soon([&] { return places(program) == grid; })) << testing::PrintToString(places(program));
}

TEST_F(WindowTest, LeavesAFolderThatVanishesUnderTheFinger)
{
    folder.tree("drive/Inner/A.txt drive/Inner/B.txt drive/Stays.txt");
    auto program = openDrive();
    ASSERT_TRUE(shows(program, "Inner"));
    use(program, "tap Inner");
    ASSERT_TRUE(hasRows(program, {"A.txt", "B.txt"}));
    ASSERT_EQ(program.send("hold -100 A.txt").answer, "ok");
    fs::remove_all(folder.url("drive/Inner").path());
    EXPECT_TRUE(shows(program, "Pane | Tessel Drive"));
    use(program, "release");
    EXPECT_TRUE(hasRows(program, {"Stays.txt"}));
    EXPECT_TRUE(hides(program, "Pane | Inner"));
}

TEST_F(WindowTest, FollowsOtherProgramsWhileARowIsSwiped)
{
    folder.tree("drive/B.txt drive/C.txt drive/D.txt");
    auto program = openDrive();
    ASSERT_TRUE(hasRows(program, {"B.txt", "C.txt", "D.txt"}));
    for (const auto* const swiped : {"C.txt", "B.txt"}) {
        ASSERT_EQ(program.send("hold -120 " + std::string(swiped)).answer, "ok");
        folder.file("drive/A.txt");
        EXPECT_TRUE(shows(program, "A.txt"));
        fs::remove(folder.url("drive/A.txt").path());
        fs::remove(folder.url("drive/" + std::string(swiped)).path());
        EXPECT_TRUE(hides(program, swiped));
        use(program, "release");
    }
    EXPECT_TRUE(hasRows(program, {"D.txt"}));
    EXPECT_EQ(program.finish().status, 0);
}

// A sheet rises from the bottom edge of a phone, and stands at its button in a window with room, where a touch beside
// it takes the place of the button that cancels.
TEST_F(WindowTest, IsAPhoneOrATabletByItsSize)
{
    auto program = open({"--gallery"});
    use(program, "tap Presentations");
    use(program, "tap Action sheet");
    for (int width = 320; width <= 1600; width += 320)
        for (int height = 480; height <= 1200; height += 180) {
            const auto size = std::to_string(width) + " " + std::to_string(height);
            use(program, "resize " + size);
            EXPECT_TRUE(shows(program, "Pane | Presentations | 0 0 " + size));
            EXPECT_EQ(holds(program, "Button | Cancel"), std::min(width, height) < 700) << size;
        }
    use(program, "key Escape");
    EXPECT_TRUE(hides(program, "Button | Delete"));
    EXPECT_EQ(program.finish().status, 0);
}

TEST_F(WindowTest, AsksInAnAlertAndHearsTheAnswer)
{
    auto program = open({"--gallery"});
    use(program, "resize 375 667");
    use(program, "tap Presentations");
    use(program, "tap Alert with a text field");
    EXPECT_THAT(program.send("focus").lines, ElementsAre("Name"));
    use(program, "type Plans");
    use(program, "tap OK");
    EXPECT_TRUE(shows(program, "Button | Alert: Plans"));
    EXPECT_FALSE(holds(program, "AlertMessage"));

    use(program, "tap Action sheet");
    use(program, "tap Delete");
    EXPECT_FALSE(holds(program, "Dialog"));
    use(program, "key Alt+Left");
    EXPECT_TRUE(shows(program, "Pane | Gallery"));
}

} // namespace
} // namespace tessel
