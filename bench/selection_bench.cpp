// What one more selected item costs in a folder of 100,000 of which half are selected: the row, the count in the title
// and what may now be done, which the limit is for.
#include "app/entry/AppDelegate.h"
#include "bench/BigFolder.h"
#include "browser/MenuEnableChecks.h"
#include "browser/NavController.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/log/UnifiedLog.h"
#include "platform/run/MainQueue.h"
#include "tests/support/TemporaryDrive.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <thread>

namespace tessel {
namespace {

constexpr std::int64_t kFiles = 100'000;

/// The program over a big folder, half of which is selected.
class Selecting {
public:
    Selecting()
    {
        application_.launch({});
        navigation().warpToFolderForURL(folder_.drive.url("Big"));
        while (list().state() != ListState::Complete) {
            (void)platform::installed().mainQueue.runReady();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        navigation().beginEditMode();
        auto urls = list().containedItemURLs();
        urls.erase(urls.begin() + kFiles / 2, urls.end());
        list().setSelectedItemURLs(urls);
    }
    [[nodiscard]] NavController& navigation() const
    {
        return static_cast<NavController&>(*delegate_.rootWindow->rootViewController());
    }
    [[nodiscard]] DocumentListController& list() const { return *navigation().getTopDocumentListController(); }

private:
    BigFolder folder_{kFiles};
    TemporaryDrive home_;
    std::unique_ptr<LinuxPlatform> platform_ =
        std::move(LinuxPlatform::create({home_.url().path(), folder_.drive.url().path(), nullptr, "en"}).value());
    platform::Scope scope_ = platform::Scope(platform_->services());
    AppDelegate delegate_;
    Application application_{delegate_, platform_->stateStore()};
};

void SelectsOneMore(benchmark::State& state)
{
    const Selecting selecting;
    auto& list = selecting.list();
    for (auto _ : state)
        list.pressRow(kFiles - 1);
    if (list.selectedItems().count < kFiles / 2)
        state.SkipWithError("nothing was selected");
}
BENCHMARK(SelectsOneMore)->Iterations(200)->Unit(benchmark::kMicrosecond);

void ChecksASelection(benchmark::State& state)
{
    const Selecting selecting;
    for (auto _ : state) {
        benchmark::DoNotOptimize(MenuEnableChecks::canShowMoveForSelectedItems(selecting.list()));
        benchmark::DoNotOptimize(MenuEnableChecks::canShowDeleteForSelectedItems(selecting.list()));
    }
    state.counters["limit_us"] = 2000;
}
BENCHMARK(ChecksASelection)->Iterations(200)->Unit(benchmark::kMicrosecond);

/// How long the main queue is busy with half of the items before the user is asked anything.
void AsksBeforeDeleting(benchmark::State& state)
{
    const Selecting selecting;
    for (auto _ : state) {
        selecting.navigation().showWarningAndDeleteDocument();
        state.PauseTiming();
        selecting.navigation().dismiss(Animated::No);
        (void)platform::installed().mainQueue.runReady();
        state.ResumeTiming();
    }
    state.counters["limit_ms"] = 50;
}
BENCHMARK(AsksBeforeDeleting)->Iterations(5)->Unit(benchmark::kMillisecond);

void AsksWhereToMove(benchmark::State& state)
{
    const Selecting selecting;
    const auto items = selecting.list().selectedItemURLs();
    for (auto _ : state) {
        selecting.navigation().showMoveTargetForItems(items, selecting.list().presentedURL());
        state.PauseTiming();
        selecting.navigation().dismiss(Animated::No);
        (void)platform::installed().mainQueue.runReady();
        state.ResumeTiming();
    }
    state.counters["limit_ms"] = 50;
}
BENCHMARK(AsksWhereToMove)->Iterations(5)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tessel
