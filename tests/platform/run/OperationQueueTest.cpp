#include "platform/run/OperationQueue.h"

#include "platform/run/SerialQueue.h"

#include <gmock/gmock.h>

#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

#include <future>
#include <latch>

namespace tessel {
namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 20s;

std::chrono::steady_clock::time_point now()
{
    return std::chrono::steady_clock::now();
}

template <typename Result>
Result answer(std::future<Result> future)
{
    if (future.wait_for(kPatience) != std::future_status::ready)
        throw std::runtime_error("no answer from the queue");
    return future.get();
}

TEST(SerialQueueTest, RunsTasksOfManyThreadsOneAtATimeAndInOrder)
{
    constexpr int kThreads = 4;
    constexpr int kTasks = 500;
    std::vector<int> next(kThreads); // no lock: a task that ran beside another would be a race
    std::promise<void> done;
    {
        SerialQueue queue("test");
        std::vector<std::thread> threads;
        for (std::size_t thread = 0; thread < kThreads; ++thread)
            threads.emplace_back([&, thread] {
                for (int task = 0; task < kTasks; ++task)
                    queue.async([&next, thread, task] { EXPECT_EQ(next[thread]++, task); });
            });
        for (auto& thread : threads)
            thread.join();
        queue.async([&done] { done.set_value(); });
        answer(done.get_future());
    }
    EXPECT_EQ(next, std::vector<int>(kThreads, kTasks));
}

// The window closes while a listing runs and others wait: the running one ends, the waiting ones never begin, one that
// it adds is dropped, and what they held is let go.
TEST(SerialQueueTest, EndsTheRunningTaskAndDropsTheWaitingOnesWhenDestroyed)
{
    auto held = std::make_shared<int>();
    const std::weak_ptr<int> waiting = held;
    std::promise<void> begun;
    bool ended = false;
    bool waitingRan = false;
    {
        SerialQueue queue("test");
        queue.async([&] {
            begun.set_value();
            for (const auto deadline = now() + kPatience; !waiting.expired() && now() < deadline;)
                std::this_thread::yield();
            queue.async([&waitingRan] { waitingRan = true; });
            ended = true;
        });
        queue.async([&waitingRan, held = std::move(held)] { waitingRan = true; });
        answer(begun.get_future());
    }
    EXPECT_TRUE(ended);
    EXPECT_TRUE(waiting.expired());
    EXPECT_FALSE(waitingRan);
}

TEST(OperationQueueTest, RunsNoMoreAtOnceThanAllowedButThatMany)
{
    constexpr int kMaximum = 2;
    std::atomic<int> running = 0;
    std::atomic<int> most = 0;
    std::latch together(kMaximum);
    std::latch done(8);
    OperationQueue queue("test", QualityOfService::Utility, kMaximum);
    for (int operation = 0; operation < 8; ++operation)
        queue.addOperation([&, operation] {
            most = std::max(most.load(), ++running);
            if (operation < kMaximum)
                together.arrive_and_wait(); // never passed by one thread alone
            --running;
            done.count_down();
        });
    done.wait();
    EXPECT_EQ(most, kMaximum);
}

TEST(OperationQueueTest, GivesItsThreadANameAndALowerPriority)
{
    std::promise<std::pair<std::string, int>> seen;
    OperationQueue queue("thumbnailQueue of the list", QualityOfService::Background);
    queue.addOperation([&seen] {
        char name[16] = {};
        ::pthread_getname_np(::pthread_self(), name, sizeof name);
        seen.set_value({name, ::getpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()))});
    });
    const int ours = ::getpriority(PRIO_PROCESS, 0);
    EXPECT_EQ(answer(seen.get_future()), std::pair(std::string("thumbnailQueue "), std::max(ours, 10)));
}

} // namespace
} // namespace tessel
