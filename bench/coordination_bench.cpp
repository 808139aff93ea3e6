#include "bench/BenchPlatform.h"
#include "files/FileUtils.h"

#include <benchmark/benchmark.h>

#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace tessel {
namespace {

using Seconds = std::chrono::duration<double>;

constexpr int kItems = 1000;

template <typename Work>
Seconds timeOf(const Work& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::steady_clock::now() - start;
}

void check(bool succeeded)
{
    if (!succeeded)
        std::abort();
}

std::vector<URL> items(const URL& folder, const char* prefix)
{
    std::vector<URL> urls;
    for (int i = 0; i < kItems; ++i)
        urls.push_back(folder.appending(prefix + std::to_string(i)));
    return urls;
}

void makeBarely(const std::vector<URL>& made, const std::vector<URL>&)
{
    for (const auto& url : made)
        check(::mkdir(url.path().c_str(), 0777) == 0);
}

void moveBarely(const std::vector<URL>& made, const std::vector<URL>& moved)
{
    for (std::size_t i = 0; i < made.size(); ++i)
        check(std::rename(made[i].path().c_str(), moved[i].path().c_str()) == 0);
}

void removeBarely(const std::vector<URL>&, const std::vector<URL>& moved)
{
    for (const auto& url : moved)
        check(::rmdir(url.path().c_str()) == 0);
}

void make(const std::vector<URL>& made, const std::vector<URL>&)
{
    for (const auto& url : made)
        check(!FileUtils::mkdir(url));
}

void move(const std::vector<URL>& made, const std::vector<URL>& moved)
{
    for (std::size_t i = 0; i < made.size(); ++i)
        check(!FileUtils::move(made[i], moved[i]));
}

void remove(const std::vector<URL>&, const std::vector<URL>& moved)
{
    for (const auto& url : moved)
        check(!FileUtils::remove(url));
}

// How many times longer 1,000 of the program's changes take, coordination and all, than the bare system calls, both in
// the same run.
void coordinateChanges(benchmark::State& state)
{
    TemporaryDrive drive;
    const BenchPlatform platform;
    const auto made = items(drive.url(), "made ");
    const auto moved = items(drive.folder("Moved"), "moved ");
    using Step = void (*)(const std::vector<URL>&, const std::vector<URL>&);
    constexpr struct {
        const char* name;
        Step bare;
        Step coordinated;
    } kSteps[] = {{"mkdir", makeBarely, make}, {"move", moveBarely, move}, {"remove", removeBarely, remove}};
    Seconds bare[std::size(kSteps)] = {};
    Seconds coordinated[std::size(kSteps)] = {};
    for (auto _ : state) {
        Seconds total{};
        for (std::size_t i = 0; i < std::size(kSteps); ++i)
            bare[i] += timeOf([&] { kSteps[i].bare(made, moved); });
        for (std::size_t i = 0; i < std::size(kSteps); ++i) {
            const auto once = timeOf([&] { kSteps[i].coordinated(made, moved); });
            coordinated[i] += once;
            total += once;
        }
        state.SetIterationTime(total.count());
    }
    Seconds bareTotal{};
    Seconds coordinatedTotal{};
    for (std::size_t i = 0; i < std::size(kSteps); ++i) {
        state.counters[kSteps[i].name] = coordinated[i] / bare[i];
        bareTotal += bare[i];
        coordinatedTotal += coordinated[i];
    }
    state.counters["ratio"] = coordinatedTotal / bareTotal;
}
BENCHMARK(coordinateChanges)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tessel
