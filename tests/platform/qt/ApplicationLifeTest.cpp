#include "platform/qt/ApplicationLife.h"
#include "platform/base/NotificationCenter.h"
#include "platform/ui/Application.h"
#include "platform/ui/StateCoder.h"
#include "tests/platform/qt/ShellFixture.h"

#include <QGuiApplication>

namespace tessel::qt {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ApplicationLifeTest : public ShellFixture, public ApplicationDelegate {
protected:
    ApplicationLifeTest()
    {
        application.launch({});
        display.show();
        happened.clear();
        life.emplace(application, shell, display);
    }

    bool applicationWillFinishLaunchingWithOptions(const LaunchOptions&) override { return true; }
    bool applicationDidFinishLaunchingWithOptions(const LaunchOptions&) override { return true; }
    void applicationWillResignActive() override { happened.emplace_back("resigns"); }
    bool applicationShouldSaveApplicationState() override { return false; }
    bool applicationShouldRestoreApplicationState() override { return false; }

    void tell(Qt::ApplicationState state) { emit qGuiApp->applicationStateChanged(state); }
    std::vector<std::string> take() { return std::exchange(happened, {}); }

    std::vector<std::string> happened;
    NotificationCenter::Observation active = platform.services().notifications.observe(
        kDidBecomeActiveNotification, [this] { happened.emplace_back("active"); });
    Application application{*this, platform.stateStore()};
    QWindow display;
    std::optional<ApplicationLife> life;
};

TEST_F(ApplicationLifeTest, ResignsWhileTheWindowCannotBeSeen)
{
    display.showMinimized();
    EXPECT_THAT(take(), ElementsAre("resigns"));
    display.showNormal();
    EXPECT_THAT(take(), ElementsAre("active"));
    display.hide();
    display.showMinimized();
    EXPECT_THAT(take(), ElementsAre("resigns"));
}

TEST_F(ApplicationLifeTest, StaysActiveWithoutTheKeyboardAndLooksAgainWhenItIsBack)
{
    tell(Qt::ApplicationActive);
    EXPECT_THAT(take(), IsEmpty()); // launching has said so
    tell(Qt::ApplicationInactive);
    EXPECT_THAT(take(), IsEmpty());
    EXPECT_FALSE(shell.property("active").toBool());
    tell(Qt::ApplicationActive);
    EXPECT_THAT(take(), ElementsAre("active"));
    tell(Qt::ApplicationSuspended);
    EXPECT_THAT(take(), ElementsAre("resigns"));
}

} // namespace
} // namespace tessel::qt
