#include "platform/console/ScreenFinder.h"
#include "platform/console/ScreenPainter.h"
#include "platform/console/ScreenText.h"

#include <gmock/gmock.h>

namespace tessel {
namespace {

class ScreenTest : public testing::Test {
protected:
    ScreenElement row(std::string kind, const std::string& name, std::string amount)
    {
        return {"row",
                {std::move(kind), name, std::move(amount)},
                name,
                [this, name] { pressed += name + ";"; },
                URL::file("/drive/" + name)};
    }

    ScreenElement control(std::string_view key, const std::string& name)
    {
        return {key, {name}, name, [this, name] { pressed += "control " + name + ";"; }, {}};
    }

    Refusal tap(std::string_view name) { return press(findNamed(screen, name)); }

    std::string pressed;
    Screen screen = {
        {"title", {"Say \"hi\""}, {}, {}, {}}, control("back", "Drive"),    row("folder", "Projects", "3 items"),
        row("file", "Plan.txt", "4 KB"),       row("file", "Twin", "1 KB"), row("file", "Twin", "2 KB"),
        row("folder", "Select", "0 items"),    control("right", "Select"),  {"toolbar", {"Move"}, "Move", {}, {}},
    };
};

TEST_F(ScreenTest, PressesTheOneThingOfAName)
{
    EXPECT_EQ(tap("Projects"), std::nullopt);
    EXPECT_EQ(tap("Drive"), std::nullopt);
    EXPECT_EQ(tap("Select"), std::nullopt) << "a row comes before a control of the same name";
    EXPECT_EQ(pressed, "Projects;control Drive;Select;");
}

TEST_F(ScreenTest, RefusesNamesThatMeanNothingOrTooMuch)
{
    EXPECT_EQ(tap("Nowhere"), "nothing called \"Nowhere\" on the screen");
    EXPECT_EQ(tap("Say \"hi\""), "nothing called \"Say \"hi\"\" on the screen") << "a title cannot be pressed";
    EXPECT_EQ(tap(""), "nothing called \"\" on the screen");
    EXPECT_EQ(tap("Twin"), "2 things are called \"Twin\"");
    EXPECT_EQ(tap("Move"), "\"Move\" is disabled");
    EXPECT_EQ(findRow(screen, "Drive").refusal, "nothing called \"Drive\" on the screen");
    EXPECT_EQ(pressed, "");
}

TEST_F(ScreenTest, IsPrintedAsLinesAndAsJSON)
{
    screen.resize(3);
    EXPECT_EQ(screenLines(screen), "title: Say \"hi\"\nback: Drive\nrow: folder | Projects | 3 items\n");
    EXPECT_EQ(screenJSON(screen), R"({"title": "Say \"hi\"", "back": "Drive", "row": ["folder | Projects | 3 items"]})"
                                  "\n");
    screen.push_back(row("file", "a\tb\\", "1 KB"));
    EXPECT_THAT(screenJSON(screen), testing::HasSubstr(R"("file | a\u0009b\\ | 1 KB"])"));
    EXPECT_EQ(screenJSON({}), "{}\n");
}

TEST_F(ScreenTest, IsDrawnInColumnsWithNumberedRows)
{
    screen = {screen[0], screen[1], row("folder", "Bücher", "3 items"), row("file", "Ein sehr langer Name", "4 KB")};
    screen[3].parts.emplace_back("in the cloud");
    screen.push_back({"status", {"2 items"}, {}, {}, {}});
    EXPECT_EQ((ScreenPainter{false, 48}.paint(screen)), "\n"
                                                        " ‹ Drive   Say \"hi\"                             \n"
                                                        "    1  Bücher              folder   3 items\n"
                                                        "    2  Ein sehr langer N…  file     4 KB       …\n"
                                                        " status: 2 items\n");
}

} // namespace
} // namespace tessel
