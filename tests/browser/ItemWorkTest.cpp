#include "browser/ItemWork.h"

#include "app/entry/AppDelegate.h"
#include "browser/NavController.h"
#include "files/SimpleTextViewController.h"
#include "platform/run/MainQueue.h"
#include "platform/ui/AlertController.h"
#include "tests/support/InstalledPlatform.h"

#include <gtest/gtest.h>

#include <semaphore>
#include <thread>
#include <vector>

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
    /// By a thread of its own, from now on.
    struct Aside {
        Aside() { ItemWork::isDoneAside = true; }
        ~Aside() { ItemWork::isDoneAside = false; }
    };
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

TEST_F(ItemWorkTest, LeavesTheMainQueueAloneWithOneLargeItem)
{
    const Aside aside;
    work(100, 0);
    EXPECT_EQ(ends, 1) << "in order, when it is short";

    std::binary_semaphore goesOn(0);
    std::vector<std::thread::id> threads;
    ItemWork::run({.title = "Deleting",
                   .count = 3,
                   .step =
                       [&](std::size_t item) {
                           if (item == 0)
                               goesOn.acquire();
                           threads.push_back(std::this_thread::get_id());
                       },
                   .finished = [this] { ++ends; }},
                  navigation());
    EXPECT_EQ(ends, 1);
    for (int tenth = 0; tenth < 6; ++tenth) {
        platform.clock.advance(0.1);
        platform.settle();
    }
    ASSERT_NE(alert(), nullptr) << "the screen tells of it meanwhile";
    ASSERT_TRUE(alert()->cancel());
    goesOn.release();
    ASSERT_TRUE(platform.runUntil([&] { return ends == 2; }));
    EXPECT_EQ(threads.size(), 1U) << "what is under way is done, and no more";
    EXPECT_NE(threads.front(), std::this_thread::get_id());
}

} // namespace
} // namespace tessel
