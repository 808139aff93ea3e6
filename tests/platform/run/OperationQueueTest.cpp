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

bool eventually(const std::function<bool()>& condition)
{
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    while (!condition() && std::chrono::steady_clock::now() < deadline)
        std::this_thread::yield();
    return condition();
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
    std::vector<int> next(kThreads);
    std::atomic<int> running = 0;
    std::promise<void> done;
    {
        SerialQueue queue("test");
        std::vector<std::thread> threads;
        for (std::size_t thread = 0; thread < kThreads; ++thread)
            threads.emplace_back([&, thread] {
                for (int task = 0; task < kTasks; ++task)
                    queue.async([&, thread, task] {
                        EXPECT_EQ(++running, 1);
                        EXPECT_EQ(next[thread]++, task);
                        std::this_thread::yield();
                        --running;
                    });
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
            EXPECT_TRUE(eventually([&waiting] { return waiting.expired(); }));
            queue.async([&waitingRan] { waitingRan = true; });
            ended = true;
        });
        queue.async([&waitingRan, held = std::move(held)] { waitingRan = true; });
        answer(begun.get_future());
    }
    EXPECT_TRUE(ended);
    EXPECT_FALSE(waitingRan);
}

TEST(OperationQueueTest, RunsNoMoreAtOnceThanAllowedButThatMany)
{
    constexpr int kMaximum = 2;
    constexpr int kOperations = 500;
    std::atomic<int> running = 0;
    std::atomic<int> met = 0;
    std::latch done(kOperations);
    OperationQueue queue("test", QualityOfService::Utility, kMaximum);
    for (int operation = 0; operation < kOperations; ++operation)
        queue.addOperation([&, operation] {
            EXPECT_LE(++running, kMaximum);
            if (operation < kMaximum) {
                ++met;
                EXPECT_TRUE(eventually([&] { return met == kMaximum; }));
            }
            std::this_thread::yield();
            --running;
            done.count_down();
        });
    done.wait();
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
