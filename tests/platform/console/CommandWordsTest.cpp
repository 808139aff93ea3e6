#include "platform/console/CommandWords.h"

#include <gmock/gmock.h>

namespace tessel {
namespace {

using testing::ElementsAreArray;

struct Case {
    std::string_view line;
    std::vector<std::string> words;
};

class CommandWordsTest : public testing::TestWithParam<Case> {};

TEST_P(CommandWordsTest, TakesALineApart)
{
    const auto parsed = CommandWords::parse(GetParam().line);
    EXPECT_FALSE(parsed.refusal);
    EXPECT_THAT(parsed.words, ElementsAreArray(GetParam().words));
}

INSTANTIATE_TEST_SUITE_P(Lines, CommandWordsTest,
                         testing::Values(Case{"", {}}, Case{" \t\r", {}}, Case{"# tap x", {}},
                                         Case{"  tap\tPlan.txt\r", {"tap", "Plan.txt"}},
                                         Case{"tap \"Annual Report\"  # the old one", {"tap", "Annual Report"}},
                                         Case{"tap Issue#4", {"tap", "Issue#4"}}, Case{"tap \"#4\"", {"tap", "#4"}},
                                         Case{R"(tap "a \"b\" \\ \c")", {"tap", R"(a "b" \ \c)"}},
                                         Case{R"(tap a\b)", {"tap", R"(a\b)"}}, Case{"search \"\"", {"search", ""}},
                                         Case{R"(tap A" "B)", {"tap", "A B"}},
                                         Case{std::string_view("tap \xff\0x", 7), {"tap", std::string("\xff\0x", 3)}}));

TEST(CommandWords, RefusesAQuoteThatIsNotClosed)
{
    for (const auto* const line : {"tap \"", "tap \"Plan", R"(tap "Plan\")"}) {
        const auto parsed = CommandWords::parse(line);
        EXPECT_EQ(parsed.refusal, "a double quote is not closed") << line;
        EXPECT_TRUE(parsed.words.empty()) << line;
    }
}

} // namespace
} // namespace tessel
