#include "bench/BenchPlatform.h"
#include "files/DRItem.h"

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <chrono>

namespace tessel {
namespace {

using Seconds = std::chrono::duration<double>;

template <typename Work>
Seconds timeOf(const Work& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::steady_clock::now() - start;
}

// The least that the kernel can be asked about a file and its tags.
void askBarely(const char* path)
{
    struct statx status = {};
    char tags[512];
    benchmark::DoNotOptimize(::statx(AT_FDCWD, path, AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS | STATX_BTIME, &status));
    benchmark::DoNotOptimize(::lgetxattr(path, "user.xdg.tags", tags, sizeof tags));
}

// Items made a second, and how many times longer one takes than the bare questions about the same file, both measured
// in turns in the same run.
void makeItems(benchmark::State& state)
{
    TemporaryDrive drive;
    const BenchPlatform platform;
    const auto url = drive.file("Projects/2026/Plan.txt", "seven!!");
    Seconds item{}, bare{};
    for (auto _ : state) {
        const auto once = timeOf([&] { benchmark::DoNotOptimize(DRItem::initWithURL(url)); });
        bare += timeOf([&] { askBarely(url.path().c_str()); });
        item += once;
        state.SetIterationTime(once.count());
    }
    state.counters["items"] = benchmark::Counter(static_cast<double>(state.iterations()) / item.count());
    state.counters["ratio"] = benchmark::Counter(item / bare);
}
BENCHMARK(makeItems)->UseManualTime();

} // namespace
} // namespace tessel
