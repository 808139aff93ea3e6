// A folder of photographs on its first and on later visits: the window with all thumbnails that it has room for, beside
// what the decoding and scaling of those pictures take alone, and the window with as many files that have no pictures.
#include "bench/WindowProcess.h"
#include "tests/support/TemporaryDrive.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace tessel {
namespace {

constexpr std::int64_t kPhotographs = 300;

using Told = std::map<std::string, double>;

class PhotographFolder {
public:
    PhotographFolder()
    {
        run({"make", folder(), std::to_string(kPhotographs)});
        for (std::int64_t number = 0; number < kPhotographs; ++number)
            drive_.file("Files/IMG_" + std::to_string(number) + ".bin", "no picture");
    }

    [[nodiscard]] WindowProcess::Command window(const std::string& meter) const { return window(meter, folder()); }

    /// Of a folder with as many files.
    [[nodiscard]] WindowProcess::Command windowWithoutPictures() const
    {
        return window("start", drive_.url("Files").path());
    }

    /// Reads and scales the first ones without a window. @returns seconds
    [[nodiscard]] double bareSeconds(double count) const
    {
        return run({"scale", folder(), std::to_string(static_cast<int>(count)), "128"})["seconds"];
    }

    /// Nor does the next start come back to where the last one had scrolled.
    void forgetThumbnails() const
    {
        std::filesystem::remove_all(drive_.url("Cache/thumbnails").path());
        std::filesystem::remove(drive_.url("Home/session.json").path());
    }

private:
    [[nodiscard]] WindowProcess::Command window(const std::string& meter, const std::string& shown) const
    {
        return {.words = {TESSELDRIVE_PROGRAM, "--log", "off", "--home", drive_.url("Home").path(), "--drive", shown},
                .meter = meter,
                .rows = kPhotographs,
                .cache = drive_.folder("Cache").path()};
    }

    [[nodiscard]] std::string folder() const { return drive_.folder("Photographs").path(); }

    static Told run(std::vector<std::string> words)
    {
        words.insert(words.begin(), TESSEL_BARE_PICTURES);
        return WindowProcess({.words = words, .meter = {}, .rows = 0, .cache = {}}).readToEnd();
    }

    const TemporaryDrive drive_;
};

/// @returns what was told, with "painted" counted from the start
Told visit(const WindowProcess::Command& command)
{
    WindowProcess process(command);
    auto told = process.readToEnd();
    if (told["painted"] > 0)
        told["painted"] -= process.started();
    return told;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Ratios are those of times that were taken one right after the other, for the machine may have other work.
void ThumbnailsOfAFolder(benchmark::State& state)
{
    const PhotographFolder folder;
    const WindowProcess::Command empty = {.words = {TESSEL_EMPTY_WINDOW}, .meter = "start", .rows = 0, .cache = {}};
    static_cast<void>(visit(folder.window("pictures"))); // makes the home
    std::vector<double> firsts, seconds, starts, ratios, toEmpty;
    double programs = 0;
    for (auto _ : state) {
        folder.forgetThumbnails();
        auto first = visit(folder.window("pictures"));
        static_cast<void>(WindowProcess(folder.window({})).secondsToSettle()); // makes those beside the screen, too
        auto second = visit(folder.window("pictures"));
        const auto decoding = folder.bareSeconds(first["pictures"]);
        const auto start = visit(folder.windowWithoutPictures())["painted"];
        if (first["painted"] <= 0 || second["painted"] <= 0 || decoding <= 0 || start <= 0)
            return state.SkipWithError("not all thumbnails were painted");
        state.SetIterationTime(first["painted"]);
        firsts.push_back(first["painted"]);
        seconds.push_back(second["painted"]);
        starts.push_back(start);
        ratios.push_back(first["painted"] / (decoding + start));
        toEmpty.push_back(first["painted"] / (decoding + visit(empty)["painted"]));
        programs += second["programs"];
        state.counters["pictures"] = first["pictures"];
    }
    state.counters["first_visit_ms"] = 1000 * median(firsts);
    state.counters["second_visit_ms"] = 1000 * median(seconds);
    state.counters["start_ms"] = 1000 * median(starts);
    state.counters["ratio_to_decoding_and_start"] = median(ratios);
    state.counters["ratio_limit"] = 1.5;
    state.counters["ratio_to_decoding_and_empty_window"] = median(toEmpty);
    state.counters["second_visit_programs"] = programs;
    state.counters["second_visit_programs_limit"] = 0;
}
BENCHMARK(ThumbnailsOfAFolder)->Iterations(9)->UseManualTime()->Unit(benchmark::kMillisecond);

void ScrollsThroughThumbnails(benchmark::State& state)
{
    const PhotographFolder folder;
    static_cast<void>(visit(folder.window("pictures"))); // makes the home
    double worst = 0;
    for (auto _ : state) {
        folder.forgetThumbnails();
        auto told = visit(folder.window("pictures-scroll"));
        if (told["frames"] <= 0)
            return state.SkipWithError("the list did not move");
        worst = std::max(worst, told["frame_p95"]);
        state.SetIterationTime(told["frame_p95"] / 1000);
    }
    state.counters["frame_p95_ms"] = worst;
    state.counters["frame_limit_ms"] = 16;
}
BENCHMARK(ScrollsThroughThumbnails)->Iterations(3)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tessel
