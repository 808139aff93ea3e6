#include "app/entry/CommandLine.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

TEST(CommandLineTest, TakesOptionsInBothForms)
{
    const char* const arguments[] = {"--console", "--home=/a b", "--drive", "/c", "--log-level", "debug"};
    const auto options = CommandLine::parse(arguments);
    ASSERT_TRUE(options);
    EXPECT_TRUE(options->console);
    EXPECT_EQ(options->home, "/a b");
    EXPECT_EQ(options->drive, "/c");
    EXPECT_EQ(options->logLevel, LogLevel::Debug);
}

TEST(CommandLineTest, SaysWhatIsWrong)
{
    const struct {
        std::vector<const char*> arguments;
        const char* reason;
    } cases[] = {
        {{"--hom", "/a"}, "Unknown option: --hom (try --help)"},
        {{"--shortcut", "recent:x"}, "A shortcut is search, or recent:ID (try --help)"},
        {{"--option", "delta"}, "An option of a test is KEY=VALUE (try --help)"},
        {{"--home"}, "--home needs a value (try --help)"},
        {{"--drive="}, "--drive needs a value (try --help)"},
        {{"--log-level", "loud"}, "No log level is called loud (try --help)"},
        {{"--json=yes"}, "Unknown option: --json=yes (try --help)"},
    };
    for (const auto& [arguments, reason] : cases) {
        const auto options = CommandLine::parse(arguments);
        ASSERT_FALSE(options) << reason;
        EXPECT_EQ(options.error().description, reason);
    }
}

} // namespace
} // namespace tessel
