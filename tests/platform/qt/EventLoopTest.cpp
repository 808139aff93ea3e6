#include "platform/qt/EventLoop.h"

#include "platform/run/MainQueue.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <gmock/gmock.h>

#include <optional>
#include <thread>

namespace tessel::qt {
namespace {

class EventLoopTest : public testing::Test {
protected:
    [[nodiscard]] bool hasTimer() { return !QAbstractEventDispatcher::instance()->registeredTimers(&*loop).isEmpty(); }
    void runUntilQuit()
    {
        QTimer::singleShot(std::chrono::seconds(30), &qtLoop, [this] { qtLoop.exit(1); });
        EXPECT_EQ(qtLoop.exec(), 0) << "nothing happened within 30 seconds";
    }

    SystemClock clock;
    MainQueue queue{clock};
    QEventLoop qtLoop;
    std::optional<EventLoop> loop{std::in_place, queue, clock};
};

TEST_F(EventLoopTest, RunsTasksOfAllThreadsAndThenRests)
{
    int ran = 0;
    std::thread other([&] {
        for (int task = 0; task < 1000; ++task)
            queue.async([&] { ++ran; });
        queue.async([&] { qtLoop.quit(); });
    });
    runUntilQuit();
    other.join();
    EXPECT_EQ(ran, 1000);
    QCoreApplication::processEvents();
    EXPECT_FALSE(hasTimer());
}

TEST_F(EventLoopTest, RunsADelayedTaskOnTimeAndWakesForNothingElse)
{
    QElapsedTimer elapsed;
    elapsed.start();
    auto cancelled = queue.after(0.005, [] { ADD_FAILURE(); });
    cancelled.cancel();
    queue.after(0.03, [&] { qtLoop.quit(); });
    runUntilQuit();
    EXPECT_GE(elapsed.elapsed(), 30);
    EXPECT_LT(elapsed.elapsed(), 3000);
    QCoreApplication::processEvents();
    EXPECT_FALSE(hasTimer());
}

TEST_F(EventLoopTest, LetsOthersHaveTurnsWhileThereIsMuchToDo)
{
    int left = 40;
    int turnsOfOthers = 0;
    std::function<void()> work = [&] {
        QElapsedTimer busy;
        busy.start();
        while (busy.elapsed() < 1) {
        }
        --left > 0 ? queue.async(work) : qtLoop.quit();
    };
    QTimer others;
    others.callOnTimeout([&] { ++turnsOfOthers; });
    others.start(0);
    queue.async(work);
    runUntilQuit();
    EXPECT_GE(turnsOfOthers, 4);
}

TEST_F(EventLoopTest, TasksMayComeAfterItsEnd)
{
    loop.reset();
    queue.async([] {});
    EXPECT_TRUE(queue.runReady());
}

} // namespace
} // namespace tessel::qt
