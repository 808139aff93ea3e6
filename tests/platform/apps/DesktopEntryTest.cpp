#include "platform/linux/apps/DesktopEntry.h"

#include <gmock/gmock.h>

namespace tessel {
namespace {

using testing::ElementsAreArray;

struct ExecCase {
    std::string exec;
    std::optional<std::vector<std::string>> arguments; ///< none: the command cannot be run
};

class ExecLineTest : public testing::TestWithParam<ExecCase> {};

// The document is "/d/a b'\";$(x).txt", the entry is called "Ed it" and has the icon "pen".
TEST_P(ExecLineTest, ExpandsACommandWithoutAShell)
{
    const auto line = ExecLine::parse(GetParam().exec);
    ASSERT_EQ(line.has_value(), GetParam().arguments.has_value());
    if (!line)
        return;
    EXPECT_EQ(line->program(), "ed");
    EXPECT_THAT(line->arguments({URL::file("/d/a b'\";$(x).txt"), "Ed it", "pen", "/e.desktop"}),
                ElementsAreArray(*GetParam().arguments));
}

const std::string kPath = "/d/a b'\";$(x).txt";
const std::string kAddress = "file:///d/a%20b%27%22%3B%24%28x%29.txt";

INSTANTIATE_TEST_SUITE_P(
    Commands, ExecLineTest,
    testing::Values(ExecCase{"ed %f", {{kPath}}}, ExecCase{"ed %F --", {{kPath, "--"}}},
                    ExecCase{"  ed\t--at=%f  ", {{"--at=" + kPath}}}, ExecCase{"ed \"%f\" '%F'", {{kPath, kPath}}},
                    ExecCase{"ed %i %c %k", {{"--icon", "pen", "Ed it", "/e.desktop"}}},
                    ExecCase{"ed %d%n %m 100%% \"5%%\"", {{"100%", "5%"}}},
                    ExecCase{R"("ed" "a \"b\" \$c \x" "" d\ e)", {{R"(a "b" $c \x)", "", "d e"}}},
                    ExecCase{"ed 'a \\b'\"c\"d", {{"a \\bcd"}}}, ExecCase{"ed", {std::vector<std::string>()}},
                    ExecCase{"ed $HOME `x` ; >y", {{"$HOME", "`x`", ";", ">y"}}}, ExecCase{"", {}}, ExecCase{"   ", {}},
                    ExecCase{"\"\" %f", {}}, ExecCase{"%f", {}}, ExecCase{"ed \"open", {}}, ExecCase{"ed 50%", {}},
                    ExecCase{"ed %y", {}}, ExecCase{"ed \"-c %f\"", {}}, ExecCase{"ed 'x'\"%u\"", {}}));

TEST(ExecLineAddressTest, GivesTheDocumentsAddress)
{
    const auto line = ExecLine::parse("ed %u %U");
    const auto document = URL::file(kPath);
    EXPECT_TRUE(line->takesDocument());
    EXPECT_FALSE(ExecLine::parse("ed %c")->takesDocument());
    EXPECT_THAT(line->arguments({document, {}, {}, {}}),
                ElementsAreArray({document.absoluteString(), document.absoluteString()}));
    EXPECT_EQ(document.absoluteString().find_first_of(" \""), std::string::npos);
}

struct NameCase {
    std::string locale;
    std::string name;
};

class DesktopEntryNameTest : public testing::TestWithParam<NameCase> {};

TEST_P(DesktopEntryNameTest, IsTheOneThatFitsTheLanguageBest)
{
    const auto* text = "# comment\n[Desktop Action x]\nName=wrong\n[Desktop Entry]\nType=Application\nName=plain\n"
                       "Name[de]=de\nName[de_AT]=de_AT\nName[sr]=sr\nName[sr@latin]=sr@latin\nName[zh_TW]=zh_TW\n"
                       "Name[fr]=\nName[ja]=\xff\nName[it]=a\\sb\\tc\\\\d\\q\nName [en]=en\n[Other]\nName=other\n";
    const auto entry = parsedDesktopEntry(text, URL::file("/a.desktop"), "a", {GetParam().locale, {}});
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->localizedName, GetParam().name);
    EXPECT_EQ(entry->name, "plain");
}

INSTANTIATE_TEST_SUITE_P(Languages, DesktopEntryNameTest,
                         testing::Values(NameCase{"de_AT", "de_AT"}, NameCase{"de_CH", "de"}, NameCase{"de", "de"},
                                         NameCase{"sr_Latn_RS", "sr@latin"}, NameCase{"sr_RS", "sr"},
                                         NameCase{"zh_Hant_TW", "zh_TW"}, NameCase{"fr_FR", "plain"},
                                         NameCase{"ja", "plain"}, NameCase{"it", "a b\tc\\d\\q"},
                                         NameCase{"es", "plain"}));

TEST(DesktopEntryTest, IsShownWhereItIsMeantFor)
{
    const auto isShown = [](const std::string& keys, std::vector<std::string> desktops) {
        const auto text = "[Desktop Entry]\nType=Application\nName=a\n" + keys;
        return parsedDesktopEntry(text, URL::file("/a.desktop"), "a", {"en", std::move(desktops)})->isShownHere;
    };
    EXPECT_TRUE(isShown("", {"GNOME"}));
    EXPECT_TRUE(isShown("OnlyShowIn=KDE;GNOME;\n", {"ubuntu", "GNOME"}));
    EXPECT_FALSE(isShown("OnlyShowIn=KDE;\n", {"GNOME"}));
    EXPECT_FALSE(isShown("OnlyShowIn=KDE;\n", {}));
    EXPECT_FALSE(isShown("NotShowIn=GNOME;\n", {"GNOME"}));
    EXPECT_TRUE(isShown("OnlyShowIn=ubuntu;\nNotShowIn=GNOME;\n", {"ubuntu", "GNOME"}));
}

} // namespace
} // namespace tessel
