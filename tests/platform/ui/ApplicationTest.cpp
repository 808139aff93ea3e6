#include "platform/ui/Application.h"

#include "platform/base/NotificationCenter.h"
#include "platform/ui/Device.h"
#include "platform/ui/StateCoder.h"
#include "platform/ui/ViewController.h"
#include "platform/ui/Window.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

namespace tessel {
namespace {

using testing::ElementsAre;

using Events = std::vector<std::string>;

class Root : public ViewController {
public:
    explicit Root(Events& events) : events_(events) {}

    [[nodiscard]] std::string className() const override { return "Root"; }
    void encodeRestorableState(StateCoder& coder) const override { coder.encode("url", URL::file("/drive/Plan.txt")); }
    void decodeRestorableState(const StateCoder& coder) override
    {
        const auto value = coder.decode("url");
        const auto* url = value.get<URL>();
        events_.push_back("restored " + (url ? url->path() : "nothing"));
    }

protected:
    void viewDidLoad() override { events_.push_back("root loaded"); }

private:
    Events& events_;
};

class Delegate : public ApplicationDelegate {
public:
    explicit Delegate(Events& events) : events_(events) {}

    bool applicationWillFinishLaunchingWithOptions(const LaunchOptions&) override
    {
        events_.push_back("will finish");
        window = std::make_shared<Window>(Rect{0, 0, 320, 480});
        window->setRootViewController(std::make_shared<Root>(events_));
        window->rootViewController()->restorationIdentifier = "Root";
        window->makeKeyAndVisible();
        return true;
    }
    bool applicationDidFinishLaunchingWithOptions(const LaunchOptions&) override
    {
        events_.push_back("did finish");
        return true;
    }
    void applicationWillResignActive() override { events_.push_back("will resign"); }
    bool applicationShouldSaveApplicationState() override { return keepsState; }
    bool applicationShouldRestoreApplicationState() override { return keepsState; }

    bool keepsState = true;
    std::shared_ptr<Window> window;

private:
    Events& events_;
};

class ApplicationTest : public testing::Test {
protected:
    Events take() { return std::exchange(events, {}); }

    Events events; // outlives the tasks that the queue still holds
    InstalledPlatform platform;
    NotificationCenter::Observation active_ =
        platform.services().notifications.observe(kDidBecomeActiveNotification, [this] { events.push_back("active"); });
    NotificationCenter::Observation resigns_ = platform.services().notifications.observe(
        kWillResignActiveNotification, [this] { events.push_back("resigns"); });
    StateStore& store = platform.stateStore();
    Delegate delegate{events};
};

TEST_F(ApplicationTest, RestoresAtTheNextStartWhatItSavedWhenItResigned)
{
    Application first(delegate, store);
    first.launch({});
    EXPECT_THAT(take(), ElementsAre("will finish", "root loaded", "did finish", "active"));
    first.resignActive();
    EXPECT_THAT(take(), ElementsAre("will resign", "resigns"));

    Application second(delegate, store);
    second.launch({});
    EXPECT_THAT(take(), ElementsAre("will finish", "root loaded", "restored /drive/Plan.txt", "did finish", "active"));
}

TEST_F(ApplicationTest, KeepsNoStateWhenTheDelegateDeclines)
{
    delegate.keepsState = false;
    Application application(delegate, store);
    application.launch({});
    application.resignActive();
    EXPECT_FALSE(store.load());
    store.save({{"Root", Value::Dictionary{}}});
    take();
    application.launch({});
    EXPECT_THAT(take(), ElementsAre("will finish", "root loaded", "did finish", "active"));
}

TEST_F(ApplicationTest, TellsEachReturnToTheScreenAndResignsOnce)
{
    Application application(delegate, store);
    application.launch({});
    take();
    application.becomeActive();
    EXPECT_THAT(take(), ElementsAre("active"));
    application.resignActive();
    application.resignActive();
    application.becomeActive();
    EXPECT_THAT(take(), ElementsAre("will resign", "resigns", "active"));
}

TEST_F(ApplicationTest, ResizesTheKeyWindowWithTheScreen)
{
    Application application(delegate, store);
    application.launch({});
    platform.services().device.setScreenBounds({0, 0, 800, 600});
    EXPECT_EQ(delegate.window->frame(), (Rect{0, 0, 800, 600}));
}

} // namespace
} // namespace tessel
