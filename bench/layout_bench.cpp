#include "bench/BenchPlatform.h"
#include "files/DRItem.h"
#include "platform/run/MainQueue.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/Window.h"
#include "preview/FileInfoStackView.h"
#include "preview/PreviewDetailsViewController.h"
#include "preview/PreviewItemManager.h"

#include <benchmark/benchmark.h>

namespace tessel {
namespace {

constexpr double kMostForAll = 1e-3;    // seconds; a details screen laid out from nothing
constexpr double kMostForChange = 1e-4; // seconds; one of its texts changed

/// A drive with a document.
struct DriveOfOne {
    BenchPlatform platform;
    TemporaryDrive folder;
    std::shared_ptr<DRItem> item = DRItem::initWithURL(folder.file("Report of the year.txt", "content"));
};

/// The document's details on a phone.
struct DetailsScreen {
    std::shared_ptr<PreviewItemManager> manager = std::make_shared<PreviewItemManager>();
    std::shared_ptr<NavigationController> navigation = std::make_shared<NavigationController>();
    std::shared_ptr<PreviewDetailsViewController> details = std::make_shared<PreviewDetailsViewController>();
    std::shared_ptr<Window> window = std::make_shared<Window>(Rect{});

    explicit DetailsScreen(const std::shared_ptr<DRItem>& item)
    {
        manager->setItem(item, false);
        details->itemManager = manager;
        platform::installed().device.setScreenBounds({0, 0, 375, 667});
        navigation->setViewControllers({details}, Animated::No);
        window->setRootViewController(navigation);
        window->makeKeyAndVisible();
        DispatchQueue::main().runReady();
    }
    [[nodiscard]] Label& place() const
    {
        return *std::static_pointer_cast<FileInfoCell>(details->fileInfoView->arrangedSubviews()[2])->valueLabel;
    }
    void layOut(double width = 375) const { details->layoutView({0, 0, width, 667}); }
};

void count(benchmark::State& state, double most)
{
    using Counter = benchmark::Counter;
    state.counters["of_limit"] = Counter(most, Counter::kIsIterationInvariantRate | Counter::kInvert);
}

// The views and their constraints are made before; what is measured makes and solves the whole system, and places all.
void layOutFromNothing(benchmark::State& state)
{
    const DriveOfOne drive;
    std::unique_ptr<DetailsScreen> screen;
    for (auto _ : state) {
        state.PauseTiming();
        screen = std::make_unique<DetailsScreen>(drive.item);
        state.ResumeTiming();
        screen->layOut();
    }
    if (screen->place().frame().width <= 0)
        state.SkipWithError("nothing is laid out");
    count(state, kMostForAll);
}
BENCHMARK(layOutFromNothing)->Unit(benchmark::kMicrosecond);

// Together with making the views, and with what the document's values and applications take to be found out.
void makeAndLayOut(benchmark::State& state)
{
    const DriveOfOne drive;
    for (auto _ : state)
        DetailsScreen(drive.item).layOut();
}
BENCHMARK(makeAndLayOut)->Unit(benchmark::kMicrosecond);

void changeAText(benchmark::State& state)
{
    const DriveOfOne drive;
    const DetailsScreen screen(drive.item);
    screen.layOut();
    bool isLonger = false;
    for (auto _ : state) {
        screen.place().setText((isLonger = !isLonger) ? "a longer text, which needs a second line here, below the first"
                                                      : "a text");
        screen.layOut();
    }
    count(state, kMostForChange);
}
BENCHMARK(changeAText)->Unit(benchmark::kMicrosecond);

// Every step of a window that is made larger and smaller, with which the rows are made anew.
void resize(benchmark::State& state)
{
    const DriveOfOne drive;
    const DetailsScreen screen(drive.item);
    double width = 375;
    for (auto _ : state) {
        width = width < 500 ? width + 1 : 280;
        screen.layOut(width);
    }
    count(state, kMostForAll);
}
BENCHMARK(resize)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tessel
