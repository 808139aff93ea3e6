#include "tests/support/Program.h"
#include "tests/support/TemporaryDrive.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <random>
#include <thread>

namespace tessel {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kLimit = std::chrono::seconds(2);

/// How many rounds to play: few in every run, and TESSELDRIVE_ROUNDS of them for who wants to know.
int rounds()
{
    const auto* wanted = std::getenv("TESSELDRIVE_ROUNDS");
    return wanted ? std::atoi(wanted) : 4;
}

/// A document under preview, while other programs change it, give it other names and places, and remove it.
class FollowedDocumentTest : public testing::Test {
protected:
    void tap(const std::string& name) { ASSERT_EQ(program.send("tap \"" + name + "\"").answer, "ok"); }
    static void run(const std::string& command) { ASSERT_EQ(std::system(command.c_str()), 0) << command; }
    [[nodiscard]] std::string path(std::string_view name) const { return "'" + drive.url(name).path() + "'"; }
    [[nodiscard]] bool screenHas(const std::string& line)
    {
        const auto lines = program.send("screen").lines;
        return std::ranges::find(lines, line) != lines.end();
    }
    /// Waits until the screen has the line, and fails when that takes longer than the limit.
    void expectSoon(const std::string& line)
    {
        const auto begin = Clock::now();
        while (!screenHas(line)) {
            if (Clock::now() - begin > kLimit)
                FAIL() << "after two seconds there is no " << line << " on the screen; the log ends:\n" << endOfLog();
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }
    void pause()
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(std::uniform_int_distribution(0, 400)(random)));
    }
    [[nodiscard]] std::string endOfLog() const
    {
        const auto text = log.read("log");
        return text.substr(text.size() - std::min<std::size_t>(text.size(), 4000));
    }
    /// How often the content of the preview has been read again.
    [[nodiscard]] std::ptrdiff_t refreshes() const
    {
        const std::string text = log.read("log");
        std::ptrdiff_t count = 0;
        for (auto at = text.find(kRefreshed); at != std::string::npos; at = text.find(kRefreshed, at + 1))
            ++count;
        return count;
    }

    static constexpr const char* kRefreshed = "Refreshing the current preview item";

    const TemporaryDrive drive{"drive"};
    const TemporaryDrive log;
    const std::string home = drive.url().deletingLastPathComponent().appending("home").path();
    /// A desktop on which no application opens texts.
    const TemporaryDrive desktop;
    const URL mime = desktop.link("mime", "/usr/share/mime");
    Program program{{"--console", "--drive", drive.url().path(), "--home", home, "--log", log.url("log").path(),
                     "--log-level", "debug", "--log-private"},
                    std::nullopt,
                    {"XDG_DATA_DIRS=" + desktop.url().path(), "XDG_DATA_HOME=" + desktop.url("own").path(),
                     "XDG_CONFIG_HOME=" + desktop.url("config").path()}};
    std::mt19937 random{7};
};

TEST_F(FollowedDocumentTest, IsFollowedAndLeftWithinTwoSeconds)
{
    drive.folder("Elsewhere");
    drive.folder(".Trash");
    for (int round = 0; round < rounds() && !HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        drive.file("Report.txt", "begun");
        expectSoon("row: file | Report.txt | 5 bytes");
        tap("Report.txt");
        expectSoon("text: begun");

        pause();
        const auto before = refreshes();
        const int saves = 1 + round % 3; // a burst of them is one refresh
        for (int save = 0; save < saves; ++save)
            run("sed -i s/.*/saved" + std::to_string(save) + "/ " + path("Report.txt"));
        expectSoon("text: saved" + std::to_string(saves - 1));
        EXPECT_EQ(refreshes(), before + 1);

        pause();
        run("mv " + path("Report.txt") + " " + path("Final.txt"));
        expectSoon("title: Final.txt");
        run("mv " + path("Final.txt") + " " + path("Elsewhere"));
        pause();
        run("sed -i s/.*/moved/ " + path("Elsewhere/Final.txt"));
        expectSoon("text: moved");
        EXPECT_TRUE(screenHas("title: Final.txt"));

        pause();
        run(round % 2 ? "rm " + path("Elsewhere/Final.txt")
                      : "mv " + path("Elsewhere/Final.txt") + " " + path(".Trash/Final.txt"));
        expectSoon("row: folder | Elsewhere | 0 items");
    }
}

} // namespace
} // namespace tessel
