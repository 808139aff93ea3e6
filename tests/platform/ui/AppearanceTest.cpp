#include "platform/run/MainQueue.h"
#include "platform/ui/AlertController.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/Window.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <utility>

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Events = std::vector<std::string>;

/// Writes down when it comes and goes.
class Page : public ViewController {
public:
    Page(std::string name, Events& events) : events_(events) { setTitle(std::move(name)); }

    [[nodiscard]] std::string className() const override { return "Page"; }

    std::function<void()> whenDismissed; ///< runs once
    std::shared_ptr<TextField> field = std::make_shared<TextField>();

protected:
    void viewDidLoad() override { view().addSubview(field); }
    void viewWillAppear(Animated) override { events_.push_back(title() + " comes"); }
    void viewDidAppear() override { events_.push_back(title() + " came"); }
    void viewWillDisappear(Animated) override { events_.push_back(title() + " goes"); }
    void viewDidDisappear() override { events_.push_back(title() + " went"); }
    void viewWillLayoutSubviews() override
    {
        events_.push_back(title() + " lays out");
        view().layoutIfNeeded(); // now, and not for ever
    }
    void wasDismissed() override
    {
        if (const auto react = std::exchange(whenDismissed, nullptr))
            react();
    }

private:
    Events& events_;
};

class AppearanceTest : public testing::Test {
protected:
    AppearanceTest()
    {
        navigation->pushViewController(root, Animated::No);
        happened();
    }

    std::shared_ptr<Page> page(const std::string& name, PresentationStyle style = PresentationStyle::OverCurrentContext)
    {
        const auto made = std::make_shared<Page>(name, events);
        made->presentationStyle = style;
        return made;
    }
    std::shared_ptr<Page> cover(const std::string& name) { return page(name, PresentationStyle::FullScreen); }
    std::function<void()> note(const std::string& event)
    {
        return [this, event] { events.push_back(event); };
    }
    Events take() { return std::exchange(events, {}); }
    Events happened()
    {
        DispatchQueue::main().runReady();
        return take();
    }

    Events events;
    InstalledPlatform platform;
    std::shared_ptr<NavigationController> navigation = std::make_shared<NavigationController>();
    std::shared_ptr<Page> root = page("root");
};

TEST_F(AppearanceTest, OneTakesThePlaceOfAnotherInTheOrderThatTheUserSees)
{
    navigation->pushViewController(page("folder"), Animated::Yes);
    EXPECT_THAT(happened(), ElementsAre("root goes", "folder comes", "root went", "folder came"));
    navigation->popViewController(Animated::Yes);
    EXPECT_THAT(happened(), ElementsAre("folder goes", "root comes", "folder went", "root came"));
    navigation->setViewControllers({page("below"), root}, Animated::No);
    navigation->pushViewController(page("never seen"), Animated::No);
    navigation->popViewController(Animated::No);
    EXPECT_THAT(happened(), IsEmpty()) << "the same one is on screen";
    navigation->setViewControllers({}, Animated::No);
    EXPECT_THAT(happened(), ElementsAre("root goes", "root went"));
}

TEST_F(AppearanceTest, AFullScreenSendsAwayWhatLiesBeneathAndAnythingElseDoesNot)
{
    root->present(page("sheet"), Animated::Yes, note("shown"));
    EXPECT_THAT(happened(), ElementsAre("sheet comes", "sheet came", "shown"));
    root->present(cover("cover"), Animated::Yes, note("shown"));
    EXPECT_THAT(take(), ElementsAre("sheet goes", "root goes", "cover comes"));
    EXPECT_THAT(happened(), ElementsAre("sheet went", "root went", "cover came", "shown"));
    navigation->pushViewController(page("hidden"), Animated::No);
    EXPECT_THAT(happened(), IsEmpty());
    root->dismiss(Animated::Yes);
    EXPECT_THAT(happened(), ElementsAre("cover goes", "hidden comes", "cover went", "hidden came"));
}

TEST_F(AppearanceTest, APresentationOfOneTaskIsToldInPairsAndNeverAsShown)
{
    const auto sheet = cover("sheet");
    navigation->present(sheet, Animated::No, note("never"));
    sheet->dismiss(Animated::No);
    EXPECT_THAT(happened(),
                ElementsAre("root goes", "sheet comes", "sheet goes", "root comes", "sheet went", "root came"));
    navigation->present(sheet, Animated::No, note("never"));
    navigation->dismiss(Animated::No);
    navigation->present(sheet, Animated::No, note("shown"));
    EXPECT_THAT(happened(), ElementsAre("root goes", "sheet comes", "sheet goes", "root comes", "root goes",
                                        "sheet comes", "root went", "sheet came", "shown"));
    EXPECT_EQ(navigation->visibleViewController(), sheet);
}

TEST_F(AppearanceTest, AChainEndsFromItsTopWithoutShowingWhatLiesBetween)
{
    const auto first = cover("first");
    const auto second = cover("second");
    navigation->present(first, Animated::No);
    first->present(second, Animated::No);
    happened();
    EXPECT_EQ(navigation->visibleViewController(), second);
    navigation->present(first, Animated::No);
    second->present(first, Animated::No);
    EXPECT_THAT(happened(), IsEmpty()) << "it is presented already";
    EXPECT_EQ(second->presentedViewController(), nullptr);
    navigation->dismiss(Animated::No);
    EXPECT_THAT(happened(), ElementsAre("second goes", "root comes", "second went", "root came"));
    EXPECT_EQ(first->presentedViewController(), nullptr);
}

TEST_F(AppearanceTest, WhatIsDismissedMayPresentAnother)
{
    const auto sheet = page("sheet");
    sheet->whenDismissed = [this] { navigation->present(page("next"), Animated::No); };
    navigation->present(sheet, Animated::No);
    happened();
    root->dismiss(Animated::No);
    EXPECT_THAT(happened(), ElementsAre("sheet goes", "next comes", "sheet went", "next came"));
}

TEST_F(AppearanceTest, AStackThatIsPresentedSpeaksForItsTop)
{
    const auto inner = std::make_shared<NavigationController>();
    inner->pushViewController(page("inner"), Animated::No);
    navigation->present(inner, Animated::Yes);
    EXPECT_THAT(happened(), ElementsAre("root goes", "inner comes", "inner came", "root went"));
    inner->topViewController()->dismiss(Animated::Yes);
    EXPECT_THAT(happened(), ElementsAre("inner goes", "root comes", "inner went", "root came"));
}

TEST_F(AppearanceTest, ChildrenComeGoAndAreLaidOutWithTheirParent)
{
    const auto folder = page("folder");
    const auto child = page("child");
    folder->addChild(child);
    EXPECT_EQ(child->view().superview().get(), &folder->view());
    navigation->pushViewController(folder, Animated::No);
    happened();
    const auto late = page("late");
    folder->addChild(late);
    EXPECT_THAT(take(), ElementsAre("late comes", "late came"));
    EXPECT_EQ(late->navigationController(), navigation);

    folder->layoutView({0, 0, 100, 100});
    EXPECT_THAT(take(), ElementsAre("folder lays out", "child lays out", "late lays out"));
    folder->layoutView({0, 0, 100, 100});
    EXPECT_THAT(take(), IsEmpty());
    navigation->popViewController(Animated::No);
    EXPECT_THAT(happened(), ElementsAre("folder goes", "child goes", "late goes", "root comes", "folder went",
                                        "child went", "late went", "root came"));
}

TEST_F(AppearanceTest, AFieldLosesTheKeyboardWithItsScreen)
{
    ASSERT_TRUE(root->field->becomeFirstResponder());
    navigation->present(page("sheet"), Animated::No);
    EXPECT_TRUE(root->field->isFirstResponder());
    navigation->pushViewController(page("folder"), Animated::No);
    happened();
    EXPECT_FALSE(root->field->isFirstResponder());
}

TEST_F(AppearanceTest, TheBackButtonIsOutOfReachBeneathAnAlert)
{
    navigation->pushViewController(page("folder"), Animated::No);
    const auto search = page("search");
    navigation->present(search, Animated::No);
    search->present(std::make_shared<AlertController>(AlertController::Style::Alert, "Sure?", ""), Animated::No);
    EXPECT_FALSE(navigation->pressBack());
    search->dismiss(Animated::No);
    EXPECT_TRUE(navigation->pressBack());
    EXPECT_EQ(navigation->presentedViewController(), nullptr);
    EXPECT_EQ(navigation->topViewController(), root);
}

TEST_F(AppearanceTest, BarsGrowWithTheUsersText)
{
    auto& device = platform.services().device;
    EXPECT_EQ(NavigationController::navigationBarHeight(), 44);
    device.textScale = 1.5;
    EXPECT_EQ(NavigationController::toolbarHeight(), 51); // 17 * 1.5 * 1.2 and 10 on either side
    device.textScale = 4;
    EXPECT_EQ(NavigationController::toolbarHeight(), 64);
}

} // namespace
} // namespace tessel
