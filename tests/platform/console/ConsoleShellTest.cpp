#include "platform/run/MainQueue.h"
#include "platform/ui/Device.h"
#include "tests/platform/console/ConsoleShellFixture.h"

#include <gmock/gmock.h>

namespace tessel {
namespace {

using testing::EndsWith;

using ConsoleShellTest = ConsoleShellFixture;

TEST_F(ConsoleShellTest, AnswersEachCommandInOneLineAndBlankLinesNot)
{
    push("Projects");
    EXPECT_EQ(run({"screen", "", "# a comment", "back", "back", "quit", "screen"}),
              "title: Projects\nback: Drive\nok\nok\nerror: there is no back button\nok\n");
}

TEST_F(ConsoleShellTest, PrintsTheScreenWhenTheInputHoldsNoCommand)
{
    EXPECT_EQ(run({"# nothing"}), "title: Drive\n");
    EXPECT_EQ(run({}, {.json = true}), "{\"title\": \"Drive\"}\n");
    EXPECT_EQ(run({"sceen"}), "error: unknown command \"sceen\"\n");
}

// Each of these is wrong, and each must be told so before anything is changed.
TEST_F(ConsoleShellTest, RefusesWrongArgumentsAndChangesNothing)
{
    platform.services().device.setScreenBounds({0, 0, 320, 480});
    for (const auto* const line : {"resize 0 10", "resize 10", "resize nan 10", "resize 10 inf", "resize 10 20px",
                                   "idiom Tablet", "direction up", "wait -1", "wait soon", "wait", "screen now", "tap",
                                   "log on", "log off debug", "log on shouting", "log", "path Drive"})
        EXPECT_THAT(run({line}), testing::StartsWith("error: ")) << line;
    EXPECT_EQ(window->frame(), (Rect{0, 0, 320, 480}));
    EXPECT_EQ(platform.clock.uptime(), Clock::Ticks::zero());
}

TEST_F(ConsoleShellTest, ChangesTheDevice)
{
    EXPECT_EQ(run({"resize 1024 768.5", "idiom tablet", "direction rtl"}), "ok\nok\nok\n");
    EXPECT_EQ(window->frame(), (Rect{0, 0, 1024, 768.5}));
    EXPECT_EQ(platform.services().device.idiom, Idiom::Pad);
    EXPECT_EQ(platform.services().device.layoutDirection, LayoutDirection::RightToLeft);
}

TEST_F(ConsoleShellTest, WaitLetsExactlySoMuchTimePass)
{
    DispatchQueue::main().after(0.7, [this] { push("soon"); });
    DispatchQueue::main().after(5, [this] { push("late"); });
    EXPECT_EQ(run({"screen", "wait 0.69", "screen", "wait 0.01", "screen"}),
              "title: Drive\nok\nok\ntitle: Drive\nok\nok\ntitle: soon\nback: Drive\nok\n");
}

TEST_F(ConsoleShellTest, SettleWaitsForWorkThatIsDueWithinTwoSecondsAndNoLonger)
{
    DispatchQueue::main().after(1.5, [this] { DispatchQueue::main().after(2, [this] { push("chained"); }); });
    DispatchQueue::main().after(300, [this] { push("far"); });
    EXPECT_THAT(run({"settle", "screen"}), EndsWith("title: chained\nback: Drive\nok\n"));

    std::function<void()> again = [&] { DispatchQueue::main().after(1, again); };
    again();
    EXPECT_EQ(run({"settle"}), "error: work is still under way after 60 seconds\n");
}

/// Applications of which one awaits a document until a moment.
class AwaitingApplications final : public ApplicationRegistry {
public:
    AwaitingApplications(const Clock& clock, Clock::Ticks until) : clock_(clock), until_(until) {}

    [[nodiscard]] std::shared_ptr<const ApplicationRecord> application(std::string_view) const override { return {}; }
    [[nodiscard]] RankedApplications applicationsForDocument(const URL&) const override { return {}; }
    [[nodiscard]] std::optional<Error> openDocument(const URL&, const ApplicationRecord&) override { return {}; }
    [[nodiscard]] std::optional<Error> openLink(const std::string&) override { return {}; }
    [[nodiscard]] bool isAwaitingDocuments() const override { return clock_.uptime() < until_; }

private:
    const Clock& clock_;
    const Clock::Ticks until_;
};

TEST_F(ConsoleShellTest, SettleWaitsForDownloads)
{
    DispatchQueue::main().after(30, [] {});
    AwaitingApplications apps(platform.clock, std::chrono::seconds(30));
    const platform::Scope scope(servicesWith(apps));
    EXPECT_EQ(run({"settle"}), "ok\n");
    EXPECT_EQ(platform.clock.uptime(), std::chrono::seconds(30));
}

TEST_F(ConsoleShellTest, TapsControlsByTheirTitle)
{
    push("Projects");
    EXPECT_EQ(run({"tap Projects", "tap Drive", "screen"}),
              "error: nothing called \"Projects\" on the screen\nok\ntitle: Drive\nok\n");
}

TEST_F(ConsoleShellTest, ResignsActiveInTheBackgroundAndAtTheEnd)
{
    run({"background", "activate"});
    EXPECT_EQ(delegate.resigned, 2);
    run({"background", "background"});
    EXPECT_EQ(delegate.resigned, 2);
}

TEST_F(ConsoleShellTest, DrawsTheScreenAfterEachCommandForAPerson)
{
    push("Projects");
    const auto output = run({"back", "jump", "quit"}, {.interactive = true});
    EXPECT_THAT(output, testing::ContainsRegex("‹ Drive   Projects *\n> \n Drive *\n> \n Drive *\n"
                                               "error: unknown command \"jump\"\n> $"));
}

} // namespace
} // namespace tessel
