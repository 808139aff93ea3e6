#include "bench/BenchPlatform.h"
#include "platform/ui/ImageView.h"
#include "platform/ui/Label.h"
#include "platform/ui/ScrollView.h"
#include "platform/ui/StackView.h"
#include "platform/ui/TextField.h"
#include "platform/ui/layout/LayoutConstraint.h"

#include <benchmark/benchmark.h>

namespace tessel {
namespace {

constexpr double kMostForAll = 1e-3;    // seconds; a details screen laid out from nothing
constexpr double kMostForChange = 1e-4; // seconds; one of its texts changed

void tie(const LayoutXAnchor& one, const LayoutXAnchor& other)
{
    one.equalTo(other)->setActive(true);
}

void tie(const LayoutYAnchor& one, const LayoutYAnchor& other)
{
    one.equalTo(other)->setActive(true);
}

void stretch(View& view, View& over)
{
    tie(view.leadingAnchor(), over.leadingAnchor());
    tie(view.trailingAnchor(), over.trailingAnchor());
    tie(view.topAnchor(), over.topAnchor());
    tie(view.bottomAnchor(), over.bottomAnchor());
}

std::shared_ptr<StackView> column(double spacing, StackView::Alignment alignment)
{
    auto stack = std::make_shared<StackView>();
    stack->setAxis(StackView::Axis::Vertical);
    stack->setAlignment(alignment);
    stack->setSpacing(spacing);
    stack->setLaidOutByConstraints(true);
    return stack;
}

// What a details screen is made of: a picture, a name in a field between hairlines, and seven rows of a name and a
// value, one of them of several lines, in stacks within stacks within a scrolling view.
struct DetailsScreen {
    std::shared_ptr<View> root = std::make_shared<View>();
    std::vector<std::shared_ptr<Label>> values;

    DetailsScreen()
    {
        const auto scroll = std::make_shared<ScrollView>();
        const auto content = std::make_shared<View>(Rect{0, 0, 375, 600});
        const auto wrapper = std::make_shared<View>();
        scroll->setLaidOutByConstraints(true);
        wrapper->setLaidOutByConstraints(true);
        root->setFrame({0, 0, 375, 667});
        root->addSubview(scroll);
        scroll->addSubview(content);
        content->addSubview(wrapper);
        stretch(*scroll, *root);
        stretch(*wrapper, *content);
        const auto main = column(0, StackView::Alignment::Center);
        wrapper->addSubview(main);
        stretch(*main, *wrapper);
        const auto picture = std::make_shared<View>();
        const auto details = column(15, StackView::Alignment::Center);
        main->addArrangedSubview(picture);
        main->addArrangedSubview(details);
        for (const auto& view : {picture, std::static_pointer_cast<View>(details)})
            view->widthAnchor().equalTo(main->widthAnchor())->setActive(true);
        addName(*details);
        addRows(*details);
    }

    static void addName(StackView& details)
    {
        const auto stack = column(7, StackView::Alignment::Center);
        details.addArrangedSubview(stack);
        stack->widthAnchor().equalTo(details.widthAnchor())->setActive(true);
        for (const double height : {1.0, 26.0, 1.0}) {
            const auto view = height == 1 ? std::make_shared<View>() : std::make_shared<TextField>();
            stack->addArrangedSubview(view);
            view->heightAnchor().equalTo(height)->setActive(true);
            view->widthAnchor().equalTo(stack->widthAnchor(), height == 1 ? 0 : -16)->setActive(true);
        }
    }

    void addRows(StackView& details)
    {
        const auto rows = column(10, StackView::Alignment::Leading);
        details.addArrangedSubview(rows);
        rows->widthAnchor().atMost(details.widthAnchor(), -16)->setActive(true);
        std::shared_ptr<Label> last;
        for (const auto* const text : {"Kind", "Size", "Where", "Created", "Modified", "Tags", "Owner"}) {
            const auto row = std::make_shared<View>();
            const auto name = std::make_shared<Label>(text);
            const auto value = std::make_shared<Label>(std::string(8, 'v') + " of " + text);
            for (const auto& label : {name, value}) {
                row->addSubview(label);
                label->setLaidOutByConstraints(true);
                label->setContentHugging(LayoutAxis::Vertical, LayoutPriority::kRequired);
                label->setCompressionResistance(LayoutAxis::Vertical, LayoutPriority::kRequired);
                tie(label->topAnchor(), row->topAnchor());
            }
            value->setNumberOfLines(last ? 4 : 1);
            value->setCompressionResistance(LayoutAxis::Horizontal, LayoutPriority::kLow);
            name->setContentHugging(LayoutAxis::Horizontal, LayoutPriority::kLow + 1);
            tie(name->leadingAnchor(), row->leadingAnchor());
            value->leadingAnchor().equalTo(name->trailingAnchor(), 10)->setActive(true);
            tie(value->trailingAnchor(), row->trailingAnchor());
            tie(value->bottomAnchor(), row->bottomAnchor());
            rows->addArrangedSubview(row);
            if (last)
                name->widthAnchor().equalTo(last->widthAnchor())->setActive(true);
            last = name;
            values.push_back(value);
        }
    }
};

void count(benchmark::State& state, double most)
{
    using Counter = benchmark::Counter;
    state.counters["of_limit"] = Counter(most, Counter::kIsIterationInvariantRate | Counter::kInvert);
}

// The views and their constraints are made before; what is measured makes and solves the whole system, and places all.
void layOutFromNothing(benchmark::State& state)
{
    const BenchPlatform platform;
    std::unique_ptr<DetailsScreen> screen;
    for (auto _ : state) {
        state.PauseTiming();
        screen = std::make_unique<DetailsScreen>();
        state.ResumeTiming();
        screen->root->layoutIfNeeded();
    }
    if (screen->values.back()->frame().width <= 0)
        state.SkipWithError("nothing is laid out");
    count(state, kMostForAll);
}
BENCHMARK(layOutFromNothing)->Unit(benchmark::kMicrosecond);

// Together with making the views.
void makeAndLayOut(benchmark::State& state)
{
    const BenchPlatform platform;
    for (auto _ : state)
        DetailsScreen().root->layoutIfNeeded();
    count(state, kMostForAll);
}
BENCHMARK(makeAndLayOut)->Unit(benchmark::kMicrosecond);

void changeAText(benchmark::State& state)
{
    const BenchPlatform platform;
    DetailsScreen screen;
    screen.root->layoutIfNeeded();
    bool isLonger = false;
    for (auto _ : state) {
        screen.values[2]->setText((isLonger = !isLonger) ? "a longer text, which needs a second line here" : "a text");
        screen.root->layoutIfNeeded();
    }
    count(state, kMostForChange);
}
BENCHMARK(changeAText)->Unit(benchmark::kMicrosecond);

// Every step of a window that is made larger and smaller.
void resize(benchmark::State& state)
{
    const BenchPlatform platform;
    DetailsScreen screen;
    double width = 375;
    for (auto _ : state) {
        width = width < 500 ? width + 1 : 280;
        screen.root->subviews().front()->subviews().front()->setFrame({0, 0, width, 600});
        screen.root->setFrame({0, 0, width, 667});
        screen.root->layoutIfNeeded();
    }
    count(state, kMostForChange);
}
BENCHMARK(resize)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tessel
