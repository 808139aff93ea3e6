#include "platform/ui/NavigationController.h"
#include "platform/run/MainQueue.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <functional>

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Events = std::vector<std::string>;

/// Writes down what happens to it, also that it is gone.
class Page : public ViewController {
public:
    Page(std::string name, Events& events) : events_(events) { setTitle(std::move(name)); }
    ~Page() override { events_.push_back(title() + " gone"); }

    [[nodiscard]] std::string className() const override { return "Page"; }
    void popItself()
    {
        navigationController()->popViewController(Animated::Yes);
        events_.push_back(title() + " still here");
    }

protected:
    void viewDidLoad() override { events_.push_back(title() + " loaded"); }
    void wasDismissed() override { events_.push_back(title() + " dismissed"); }

private:
    Events& events_;
};

class Witness : public NavigationControllerDelegate {
public:
    explicit Witness(Events& events) : events_(events) {}

    void navigationControllerDidShowViewController(NavigationController& navigation,
                                                   const std::shared_ptr<ViewController>& shown,
                                                   Animated animated) override
    {
        events_.push_back(shown->title() + (animated == Animated::Yes ? " slid in" : " shown"));
        if (auto next = std::exchange(whenShown, nullptr))
            next(navigation);
    }

    std::function<void(NavigationController&)> whenShown; ///< runs once

private:
    Events& events_;
};

class NavigationControllerTest : public testing::Test {
protected:
    NavigationControllerTest() { navigation->delegate = &witness; }

    std::shared_ptr<Page> page(const std::string& name) { return std::make_shared<Page>(name, events); }
    Events take() { return std::exchange(events, {}); }

    /// What happened once the main queue has run.
    Events happened()
    {
        DispatchQueue::main().runReady();
        return take();
    }

    Events events; // outlives the tasks that the queue still holds
    InstalledPlatform platform;
    Witness witness{events};
    std::shared_ptr<NavigationController> navigation = std::make_shared<NavigationController>();
};

TEST_F(NavigationControllerTest, TellsOfABurstOfChangesOnceAndLater)
{
    navigation->setViewControllers({page("root"), page("folder")}, Animated::No);
    navigation->pushViewController(page("file"), Animated::Yes);
    navigation->popToRootViewController(Animated::No);
    navigation->pushViewController(page("last"), Animated::Yes);

    EXPECT_THAT(take(), IsEmpty());
    EXPECT_THAT(happened(), ElementsAre("last loaded", "last slid in", "folder gone", "file gone"));
    EXPECT_THAT(happened(), IsEmpty());
}

TEST_F(NavigationControllerTest, TellsAgainWhenTheStackChangesWhileItTells)
{
    witness.whenShown = [this](NavigationController& shown) { shown.pushViewController(page("next"), Animated::No); };
    navigation->pushViewController(page("root"), Animated::No);
    EXPECT_THAT(happened(), ElementsAre("root loaded", "root shown", "next loaded", "next shown"));
    EXPECT_EQ(navigation->viewControllers().size(), 2U);
}

TEST_F(NavigationControllerTest, KeepsAControllerAliveThatPopsItself)
{
    navigation->setViewControllers({page("root"), page("folder")}, Animated::No);
    happened();
    static_cast<Page&>(*navigation->topViewController()).popItself();
    EXPECT_THAT(take(), ElementsAre("folder still here"));
    EXPECT_THAT(happened(), ElementsAre("root loaded", "root slid in", "folder gone"));
}

TEST_F(NavigationControllerTest, ControllersKnowTheirStackOnlyWhileTheyAreOnIt)
{
    const auto folder = page("folder");
    navigation->setViewControllers({page("root"), folder}, Animated::No);
    EXPECT_EQ(folder->navigationController(), navigation);
    navigation->setViewControllers({folder}, Animated::No);
    EXPECT_EQ(folder->navigationController(), navigation);
    navigation->setViewControllers({page("other")}, Animated::No);
    EXPECT_EQ(folder->navigationController(), nullptr);
}

TEST_F(NavigationControllerTest, TellsNobodyOnceItIsGone)
{
    navigation->pushViewController(page("root"), Animated::No);
    navigation.reset();
    EXPECT_THAT(happened(), ElementsAre("root gone"));
}

TEST_F(NavigationControllerTest, HasABackButtonOnlyBelowTheRootAndUnlessItIsHidden)
{
    const auto folder = page("folder");
    navigation->pushViewController(page("root"), Animated::No);
    EXPECT_FALSE(navigation->pressBack());
    navigation->pushViewController(folder, Animated::No);
    folder->navigationItem.setHidesBackButton(true);
    EXPECT_FALSE(navigation->pressBack());
    folder->navigationItem.setHidesBackButton(false);
    const auto search = page("search");
    navigation->present(search, Animated::No);
    EXPECT_FALSE(navigation->pressBack()) << "beneath a full screen";
    navigation->dismiss(Animated::No);
    search->presentationStyle = PresentationStyle::OverCurrentContext;
    navigation->present(search, Animated::No);
    take();

    EXPECT_TRUE(navigation->pressBack());
    EXPECT_THAT(take(), ElementsAre("search dismissed"));
    EXPECT_EQ(navigation->topViewController()->title(), "root");
    EXPECT_EQ(navigation->presentedViewController(), nullptr);
}

TEST_F(NavigationControllerTest, TellsWhatItPresentedThatItIsReplacedOrDismissed)
{
    const auto first = page("first");
    first->present(page("over first"), Animated::No);
    navigation->present(first, Animated::No);
    navigation->present(first, Animated::No);
    EXPECT_THAT(take(), ElementsAre("over first loaded", "first loaded"));

    navigation->present(page("second"), Animated::No);
    EXPECT_THAT(take(), ElementsAre("second loaded", "over first dismissed", "first dismissed"));
    navigation->dismiss(Animated::No);
    navigation->dismiss(Animated::No);
    EXPECT_THAT(take(), ElementsAre("second dismissed"));
}

} // namespace
} // namespace tessel
