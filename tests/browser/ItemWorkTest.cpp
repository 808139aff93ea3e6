#include "browser/ItemWork.h"

#include "app/entry/AppDelegate.h"
#include "browser/NavController.h"
#include "files/SimpleTextViewController.h"
#include "platform/run/MainQueue.h"
#include "platform/ui/AlertController.h"
#include "tests/support/InstalledPlatform.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

class ItemWorkTest : public testing::Test {
protected:
    ItemWorkTest()
    {
        application.launch({});
        platform.settle();
    }
    [[nodiscard]] std::shared_ptr<NavController> navigation() const
    {
        return std::dynamic_pointer_cast<NavController>(delegate.rootWindow->rootViewController());
    }
    [[nodiscard]] std::shared_ptr<AlertController> alert() const
    {
        return std::dynamic_pointer_cast<AlertController>(navigation()->visibleViewController());
    }
    /// @param seconds that each item takes
    void work(std::size_t count, double seconds)
    {
        ItemWork::run({.title = "Moving",
                       .count = count,
                       .step =
                           [this, seconds](std::size_t item) {
                               EXPECT_EQ(item, steps++);
                               platform.clock.advance(seconds);
                           },
                       .finished = [this] { ++ends; }},
                      navigation());
    }
    bool runOne() { return platform.services().mainQueue.runOne(); }

    InstalledPlatform platform;
    AppDelegate delegate;
    Application application{delegate, platform.stateStore()};
    std::size_t steps = 0;
    int ends = 0;
};

TEST_F(ItemWorkTest, IsDoneAtOnceWhenItIsShort)
{
    work(0, 0);
    EXPECT_EQ(ends, 1);
    work(100, 0.0001);
    EXPECT_EQ(steps, 100U);
    EXPECT_EQ(ends, 2);
    EXPECT_EQ(alert(), nullptr);
}

TEST_F(ItemWorkTest, LetsTheQueueRunAndTellsHowMuchIsLeft)
{
    work(8, 0.2);
    EXPECT_EQ(steps, 1U);
    while (!alert() && runOne())
        ;
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(steps, 3U) << "more than half a second";
    EXPECT_EQ(alert()->title(), "Moving");
    const auto shown = std::dynamic_pointer_cast<SimpleTextViewController>(alert()->contentViewController());
    EXPECT_EQ(shown->messageLabel->text(), "5 items left");
    platform.settle();
    EXPECT_EQ(steps, 8U);
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(alert(), nullptr);
}

TEST_F(ItemWorkTest, TellsAgainWhenWhatItsAlertLayOnHasGone)
{
    work(20, 0.2);
    while (!alert() && runOne())
        ;
    const auto first = alert();
    navigation()->dismiss(Animated::No);
    while (!alert() && runOne())
        ;
    ASSERT_NE(alert(), nullptr);
    EXPECT_NE(alert(), first);
    EXPECT_LT(steps, 20U);
    platform.settle();
    EXPECT_EQ(alert(), nullptr);
    EXPECT_EQ(ends, 1);
}

TEST_F(ItemWorkTest, EndsBehindAnItemWhenCancelled)
{
    work(8, 0.2);
    while (!alert() && runOne())
        ;
    ASSERT_TRUE(alert() && alert()->cancel());
    const auto done = steps;
    platform.settle();
    EXPECT_EQ(steps, done);
    EXPECT_EQ(ends, 1);
}

} // namespace
} // namespace tessel
