#pragma once

#include "platform/console/ConsoleShell.h"
#include "platform/ui/Application.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/Window.h"
#include "tests/support/InstalledPlatform.h"

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <sstream>
#include <string>

namespace tessel {

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

/// An application of one window with a stack of pages, and a console on it.
class ConsoleShellFixture : public testing::Test {
protected:
    ConsoleShellFixture()
    {
        window->setRootViewController(navigation);
        window->makeKeyAndVisible();
        push("Drive");
        application.launch({});
    }

    std::shared_ptr<Page> push(const std::string& title)
    {
        auto page = std::make_shared<Page>();
        page->setTitle(title);
        navigation->pushViewController(page, Animated::No);
        return page;
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

} // namespace tessel
