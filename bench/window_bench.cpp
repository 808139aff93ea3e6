// The window, as a user meets it: the program itself, unmodified, without a screen and painting by the processor. Its
// start stands beside that of an empty window of the same toolkit; a large folder beside the bare loop that lists it.
#include "bench/BareListing.h"
#include "bench/BigFolder.h"
#include "bench/WindowProcess.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

namespace tessel {
namespace {

constexpr std::int64_t kManyFiles = 100'000;

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

WindowProcess::Command emptyWindow(std::string meter = {})
{
    return {.words = {TESSEL_EMPTY_WINDOW}, .meter = std::move(meter), .rows = 0, .cache = {}};
}

/// The program over the folder "Big", with its records beside it.
WindowProcess::Command driveWindow(const TemporaryDrive& drive, std::string meter = {}, std::int64_t rows = 0)
{
    return {.words = {TESSELDRIVE_PROGRAM, "--log", "off", "--home", drive.url("Home").path(), "--drive",
                      drive.url("Big").path()},
            .meter = std::move(meter),
            .rows = rows,
            .cache = drive.folder("Cache").path()};
}

/// @returns seconds from the start to the first frame with all rows that are waited for; 0 when there was none
double secondsToPaint(const WindowProcess::Command& command)
{
    WindowProcess process(command);
    const auto found = process.readToEnd();
    const auto painted = found.find("painted");
    return painted == found.end() ? 0 : painted->second - process.started();
}

void WindowStart(benchmark::State& state)
{
    const BigFolder folder(200);
    const auto program = driveWindow(folder.drive, "start", 200);
    const auto empty = emptyWindow("start");
    secondsToPaint(program); // makes the home, and warms the caches
    secondsToPaint(empty);
    std::vector<double> programs, empties;
    for (auto _ : state) {
        empties.push_back(secondsToPaint(empty));
        programs.push_back(secondsToPaint(program));
        state.SetIterationTime(programs.back());
        if (programs.back() == 0 || empties.back() == 0)
            return state.SkipWithError("nothing was painted");
    }
    state.counters["program_ms"] = 1000 * median(programs);
    state.counters["empty_window_ms"] = 1000 * median(empties);
    state.counters["ratio_to_empty_window"] = median(programs) / median(empties);
    state.counters["ratio_limit"] = 2.5;
}
BENCHMARK(WindowStart)->Iterations(9)->UseManualTime()->Unit(benchmark::kMillisecond);

// Until the processor has nothing more to do for the window, so until no pixel changes.
void WindowSettlesOnManyFiles(benchmark::State& state)
{
    const BigFolder folder(kManyFiles);
    static_cast<void>(WindowProcess(driveWindow(folder.drive)).secondsToSettle()); // makes the home
    std::vector<double> ratios, settled;
    double peak = 0;
    double idle = 0;
    for (auto _ : state) {
        const auto bare = listBarelyInChild(folder.drive.url("Big"));
        const auto empty = secondsToPaint(emptyWindow("start"));
        WindowProcess process(driveWindow(folder.drive));
        settled.push_back(process.secondsToSettle());
        state.SetIterationTime(settled.back());
        if (bare.seconds == 0 || empty == 0 || settled.back() == 0)
            return state.SkipWithError("a program did not run");
        ratios.push_back(settled.back() / (bare.seconds + empty));
        peak = std::max(peak, process.peakMegabytes());
        idle = std::max(idle, process.processorSecondsWithin(5));
    }
    state.counters["settled_ms"] = 1000 * median(settled);
    state.counters["ratio_to_bare_loop_and_empty_window"] = median(ratios);
    state.counters["ratio_limit"] = 2.5;
    state.counters["peak_MB"] = peak;
    state.counters["peak_MB_limit"] = 150;
    state.counters["idle_5s_cpu_ms"] = 1000 * idle;
    state.counters["idle_5s_cpu_ms_limit"] = 0;
}
BENCHMARK(WindowSettlesOnManyFiles)->Iterations(5)->UseManualTime()->Unit(benchmark::kMillisecond);

void WindowScrollsManyFiles(benchmark::State& state)
{
    const BigFolder folder(kManyFiles);
    const auto command = driveWindow(folder.drive, "scroll", kManyFiles);
    double steps = 0;
    double jumps = 0;
    double work = 0;
    for (auto _ : state) {
        auto found = WindowProcess(command).readToEnd();
        if (found["step_p95"] == 0)
            return state.SkipWithError("the list did not move");
        steps = found["step_p95"];
        jumps = found["jump_p95"];
        work = found["flick_work_p95"];
        state.SetIterationTime(found["step_mean"] / 1000);
    }
    state.counters["frame_p95_ms"] = steps;
    state.counters["jumping_frame_p95_ms"] = jumps;
    state.counters["flick_work_p95_ms"] = work;
    state.counters["frame_limit_ms"] = 10;
    state.counters["ratio_to_limit"] = std::max({steps, jumps, work}) / 10;
}
BENCHMARK(WindowScrollsManyFiles)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tessel
