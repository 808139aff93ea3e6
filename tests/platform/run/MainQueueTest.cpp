#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <thread>

namespace tessel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class MainQueueTest : public ::testing::Test {
protected:
    Task note(std::string what)
    {
        return [this, what] { ran.push_back(what); };
    }

    InstalledPlatform platform;
    MainQueue& queue = DispatchQueue::main();
    std::vector<std::string> ran;
};

TEST_F(MainQueueTest, RunsTasksInOrderAndThoseTheyAdd)
{
    queue.async([&] {
        queue.async(note("third"));
        queue.after(0, note("fourth"));
        ran.emplace_back("first");
    });
    queue.async(note("second"));
    EXPECT_THAT(ran, IsEmpty());

    EXPECT_TRUE(queue.runReady());

    EXPECT_THAT(ran, ElementsAre("first", "second", "third", "fourth"));
    EXPECT_FALSE(queue.runOne());
}

TEST_F(MainQueueTest, RunsDelayedTasksAtTheirMomentAndInTheirOrder)
{
    const auto noteTime = [this] { ran.push_back(std::to_string(platform.clock.uptime() / std::chrono::seconds(1))); };
    queue.after(300, noteTime);
    queue.after(10, [&] { queue.after(5, noteTime); });
    queue.after(20, note("one"));
    queue.after(20, note("two"));
    queue.after(301, note("too late"));

    platform.turn(300);

    EXPECT_THAT(ran, ElementsAre("15", "one", "two", "300"));
    EXPECT_EQ(queue.nextDue(), Clock::Ticks(std::chrono::seconds(301)));
}

// A spinner's timer is cancelled by the very answer that falls due with it, and what it held is let go at once.
TEST_F(MainQueueTest, NeverRunsACancelledTask)
{
    MainQueue::DelayedTask none;
    none.cancel();

    MainQueue::DelayedTask itself;
    MainQueue::DelayedTask other;
    auto held = std::make_shared<int>();
    itself = queue.after(1, [&] {
        itself.cancel();
        other.cancel();
        ran.emplace_back("itself");
    });
    other = queue.after(1, [this, held] { ran.emplace_back("other"); });
    auto early = queue.after(1, [this, held] { ran.emplace_back("early"); });
    early.cancel();
    EXPECT_EQ(held.use_count(), 2);

    platform.turn(2);

    EXPECT_THAT(ran, ElementsAre("itself"));
    EXPECT_EQ(held.use_count(), 1);
}

TEST_F(MainQueueTest, LetsGoOfWhatTasksHoldThatNeverRan)
{
    const auto held = std::make_shared<int>(0);
    // What goes with a task may add another one.
    auto adding = std::shared_ptr<void>(nullptr, [&](void*) { queue.async([held] { ++*held; }); });
    queue.async([held, adding] { ++*held; });
    queue.after(5, [held] { ++*held; });
    adding.reset();
    queue.drop();
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_FALSE(queue.runReady());
    EXPECT_EQ(*held, 0);
}

TEST_F(MainQueueTest, TakesTasksFromManyThreadsAndWakesItsLoop)
{
    constexpr int kThreads = 4;
    constexpr int kTasks = 500;
    std::atomic<int> wakes = 0;
    queue.setWakeHandler([&wakes] { ++wakes; });
    std::vector<int> next(kThreads);
    std::vector<std::thread> threads;
    for (std::size_t thread = 0; thread < kThreads; ++thread)
        threads.emplace_back([this, &next, thread] {
            for (int task = 0; task < kTasks; ++task)
                queue.async([&next, thread, task] { EXPECT_EQ(next[thread]++, task); });
        });
    while (wakes < kThreads * kTasks)
        queue.runReady();
    for (auto& thread : threads)
        thread.join();
    queue.runReady();

    EXPECT_THAT(next, ElementsAre(kTasks, kTasks, kTasks, kTasks));
}

} // namespace
} // namespace tessel
