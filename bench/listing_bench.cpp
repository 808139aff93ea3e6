// A folder's list, from making it to its last row, beside a bare loop that reads the same names and attributes and
// sorts them by collation keys on one thread. Every run is a process of its own, so that one's memory is not another's;
// the kernel's caches are warm for both.
#include "bench/BareListing.h"
#include "bench/BigFolder.h"
#include "platform/documents/DocumentListController.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/run/MainQueue.h"
#include "tests/support/TemporaryDrive.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <fstream>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <malloc.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

namespace tessel {
namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

struct Measured {
    double complete = 0; ///< seconds
    double firstRows = 0;
    double longestBlock = 0;  ///< of the main queue, in seconds
    double oneChange = 0;     ///< processor time of the whole process for one changed file, in seconds
    double oneChangeSeen = 0; ///< from the change to its row, in seconds; changes that come together are gathered first
    double heapBytes = 0;     ///< that the list holds at the end
    double peakMegabytes = 0;
    double rows = 0;
};

/// What `work` measures in a process of its own.
Measured inChild(const std::function<Measured()>& work)
{
    int ends[2];
    Measured measured;
    if (::pipe(ends) != 0)
        return measured;
    const auto child = ::fork();
    if (child == 0) {
        measured = work();
        const auto written = ::write(ends[1], &measured, sizeof measured);
        ::_exit(written == sizeof measured ? 0 : 1);
    }
    ::close(ends[1]);
    if (::read(ends[0], &measured, sizeof measured) != sizeof measured)
        measured = {};
    ::close(ends[0]);
    ::waitpid(child, nullptr, 0);
    return measured;
}

double peakMegabytes()
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (word == "VmHWM:" && status >> word)
            return std::stod(word) / 1024;
    return 0;
}

double heapBytes()
{
    const auto heap = ::mallinfo2();
    return static_cast<double>(heap.uordblks + heap.hblkhd);
}

double processorSeconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// A main loop that notes how long each task holds it up.
class MainLoop {
public:
    explicit MainLoop(MainQueue& queue) : queue_(queue)
    {
        queue_.setWakeHandler([this] {
            const std::lock_guard lock(mutex_);
            woken_ = true;
            changed_.notify_one();
        });
    }

    void runUntil(const std::function<bool()>& condition)
    {
        while (!condition()) {
            const auto start = Clock::now();
            if (queue_.runOne())
                longestBlock = std::max(longestBlock, secondsSince(start));
            else
                wait();
        }
    }

    double longestBlock = 0; ///< seconds

private:
    void wait()
    {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return woken_; });
        woken_ = false;
    }

    MainQueue& queue_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool woken_ = true;
};

Measured listByController(const URL& home, const URL& folder)
{
    Measured measured;
    const auto platform = LinuxPlatform::create({.home = home.path(), .drive = folder.path(), .locale = "en_GB"});
    if (!platform)
        return measured;
    const auto services = platform.value()->services();
    const platform::Scope scope(services);
    MainLoop loop(services.mainQueue);
    const auto heapBefore = heapBytes();

    const auto start = Clock::now();
    const auto list = DocumentListController::create();
    list->rowsChanged = [&](const RowChanges&) {
        if (measured.firstRows == 0 && list->containedItemCount() > 0)
            measured.firstRows = secondsSince(start);
    };
    list->view();
    loop.runUntil([&] { return list->state() != ListState::Loading; });
    measured.complete = secondsSince(start);
    measured.rows = static_cast<double>(list->containedItemCount());
    measured.heapBytes = heapBytes() - heapBefore;
    measured.peakMegabytes = peakMegabytes();

    constexpr int kChanges = 10;
    for (int change = 0; change < kChanges; ++change) {
        const auto path = folder.path() + "/New";
        const bool isNew = change % 2 == 0;
        const auto count = list->containedItemCount();
        std::this_thread::sleep_for(std::chrono::milliseconds(100)); // changes that come together are gathered
        const auto changed = Clock::now();
        const auto spentBefore = processorSeconds();
        if (isNew)
            ::close(::creat(path.c_str(), 0600));
        else
            ::unlink(path.c_str());
        loop.runUntil([&] { return list->containedItemCount() != count; });
        measured.oneChangeSeen += secondsSince(changed) / kChanges;
        measured.oneChange += (processorSeconds() - spentBefore) / kChanges;
    }
    measured.longestBlock = loop.longestBlock;
    return measured;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void ListFolder(benchmark::State& state)
{
    const BigFolder folder(state.range(0));
    const auto url = folder.drive.url("Big");
    const auto home = folder.drive.folder("Home");
    const auto list = [&] { return listByController(home, url); };
    inChild(list); // makes the home, and warms the caches
    std::vector<double> complete, firstRows;
    Measured worst;
    for (auto _ : state) {
        const auto bare = listBarelyInChild(url);
        const auto now = inChild(list);
        if (now.rows != static_cast<double>(state.range(0)) || bare.rows != now.rows) {
            state.SkipWithError("the list is not complete");
            return;
        }
        state.SetIterationTime(now.complete);
        complete.push_back(now.complete / bare.seconds);
        firstRows.push_back((now.firstRows > 0 ? now.firstRows : now.complete) / bare.seconds);
        worst.oneChange = std::max(worst.oneChange, now.oneChange);
        worst.oneChangeSeen = std::max(worst.oneChangeSeen, now.oneChangeSeen);
        worst.longestBlock = std::max(worst.longestBlock, now.longestBlock);
        worst.peakMegabytes = std::max(worst.peakMegabytes, now.peakMegabytes);
        worst.heapBytes = std::max(worst.heapBytes, now.heapBytes);
    }
    state.counters["complete_to_bare"] = median(complete);
    state.counters["first_rows_to_bare"] = median(firstRows);
    state.counters["longest_block_ms"] = worst.longestBlock * 1000;
    state.counters["one_change_cpu_ms"] = worst.oneChange * 1000;
    state.counters["one_change_seen_ms"] = worst.oneChangeSeen * 1000;
    state.counters["peak_MB"] = worst.peakMegabytes;
    state.counters["bytes_per_row"] = worst.heapBytes / static_cast<double>(state.range(0)) - folder.nameBytes();
}
BENCHMARK(ListFolder)
    ->Arg(1'000)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Iterations(9)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(ListFolder)->Arg(1'000'000)->Iterations(3)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tessel
