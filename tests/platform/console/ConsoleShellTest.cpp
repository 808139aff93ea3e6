#include "platform/console/ConsoleShell.h"

#include "platform/run/MainQueue.h"
#include "platform/ui/Application.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/Window.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <deque>
#include <sstream>

namespace tessel {
namespace {

using testing::EndsWith;

class Page : public ViewController {
public:
    [[nodiscard]] std::string className() const override { return "Page"; }
};

class SilentDelegate : public ApplicationDelegate {
public:
    bool applicationWillFinishLaunchingWithOptions(const LaunchOptions&) override { return true; }
    bool applicationDidFinishLaunchingWithOptions(const LaunchOptions&) override { return true; }
    void applicationWillResignActive() override { ++resigned; }
    bool applicationShouldSaveApplicationState() override { return false; }
    bool applicationShouldRestoreApplicationState() override { return false; }

    int resigned = 0;
};

/// A script whose waits take no time: they turn the clock.
class Script : public LineSource {
public:
    Script(ManualClock& clock, std::deque<std::string> lines) : clock_(clock), lines_(std::move(lines)) {}

    Input next(std::optional<Clock::Ticks>) override
    {
        if (lines_.empty())
            return {Input::Kind::End, {}};
        auto line = std::move(lines_.front());
        lines_.pop_front();
        return {Input::Kind::Line, std::move(line)};
    }
    void waitForWake(Clock::Ticks timeout) override { clock_.advanceTo(clock_.uptime() + timeout); }

private:
    ManualClock& clock_;
    std::deque<std::string> lines_;
};

class ConsoleShellTest : public testing::Test {
protected:
    ConsoleShellTest()
    {
        window->setRootViewController(navigation);
        window->makeKeyAndVisible();
        push("Drive");
        application.launch({});
    }

    void push(const std::string& title)
    {
        const auto page = std::make_shared<Page>();
        page->setTitle(title);
        navigation->pushViewController(page, Animated::No);
    }

    std::string run(std::deque<std::string> lines, const ConsoleOptions& options = {})
    {
        Script script(platform.clock, std::move(lines));
        std::ostringstream output;
        ConsoleShell(application, script, output, options).run();
        return output.str();
    }

    InstalledPlatform platform;
    SilentDelegate delegate;
    Application application{delegate, platform.stateStore()};
    std::shared_ptr<NavigationController> navigation = std::make_shared<NavigationController>();
    std::shared_ptr<Window> window = std::make_shared<Window>(Rect{0, 0, 320, 480});
};

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
