#include "platform/linux/text/IcuTextServices.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <numeric>
#include <random>

#include <unicode/coll.h>

namespace tessel {

namespace {

constexpr std::uint32_t kNames = 100'000;
const std::map<std::string_view, std::string_view> kNoTables;

/// What people keep: photos, scans, downloads, drafts, in no order.
const std::vector<std::string>& asciiNames()
{
    static const auto names = [] {
        std::mt19937 random(20261122);
        std::vector<std::string> result;
        for (std::uint32_t i = 0; i < kNames; ++i) {
            const auto number = std::to_string(random() % 100'000);
            switch (i % 5) {
            case 0:
                result.push_back("IMG_" + number + ".JPG");
                break;
            case 1:
                result.push_back("Report " + std::to_string(2000 + random() % 27) + " final (" + number + ").pdf");
                break;
            case 2:
                result.push_back("Screenshot 2026-11-" + std::to_string(10 + random() % 20) + " at " + number + ".png");
                break;
            case 3:
                result.push_back(std::string(1, static_cast<char>('a' + random() % 26)) + "-notes-" + number + ".txt");
                break;
            default:
                result.push_back("Invoice_" + number + "_" + std::to_string(random() % 1000) + ".xlsx");
                break;
            }
        }
        return result;
    }();
    return names;
}

/// The same, one in ten with a letter beyond ASCII.
const std::vector<std::string>& mixedNames()
{
    static const auto names = [] {
        auto result = asciiNames();
        for (std::uint32_t i = 0; i < kNames; i += 10)
            result[i].insert(result[i].size() / 2, "é");
        return result;
    }();
    return names;
}

std::vector<std::string_view> viewsOf(const std::vector<std::string>& names)
{
    return {names.begin(), names.end()};
}

/// The usual way: a sort key for each name, and std::sort.
std::vector<std::uint32_t> orderBySortKeys(const icu::Collator& collator, const std::vector<std::string_view>& names)
{
    std::vector<std::string> keys(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto text = icu::UnicodeString::fromUTF8({names[i].data(), static_cast<std::int32_t>(names[i].size())});
        std::uint8_t key[1024];
        const auto length = collator.getSortKey(text, key, sizeof key);
        keys[i].assign(reinterpret_cast<const char*>(key), static_cast<std::size_t>(length));
    }
    std::vector<std::uint32_t> order(names.size());
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(), [&](auto left, auto right) { return keys[left] < keys[right]; });
    return order;
}

/// Seconds that the usual way takes for the same names, measured once.
double secondsBySortKeys(const std::vector<std::string_view>& names)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance("en", status));
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    const auto start = std::chrono::steady_clock::now();
    benchmark::DoNotOptimize(orderBySortKeys(*collator, names));
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void measure(benchmark::State& state, const std::vector<std::string>& strings, std::size_t count)
{
    const auto names = viewsOf(strings);
    const IcuTextServices text("en", kNoTables);
    const auto start = std::chrono::steady_clock::now();
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(text.firstOfNames(names, count));
    const std::chrono::duration<double> ours = std::chrono::steady_clock::now() - start;
    state.counters["timesFasterThanSortKeys"] =
        secondsBySortKeys(names) / (ours.count() / static_cast<double>(state.iterations()));
}

void orderOfAsciiNames(benchmark::State& state)
{
    measure(state, asciiNames(), kNames);
}
BENCHMARK(orderOfAsciiNames)->Unit(benchmark::kMillisecond);

void orderOfMixedNames(benchmark::State& state)
{
    measure(state, mixedNames(), kNames);
}
BENCHMARK(orderOfMixedNames)->Unit(benchmark::kMillisecond);

void firstScreenOfAsciiNames(benchmark::State& state)
{
    measure(state, asciiNames(), 50);
}
BENCHMARK(firstScreenOfAsciiNames)->Unit(benchmark::kMillisecond);

/// What the first list of a start pays: the collator, its tables and a small folder.
void firstOrderAfterStart(benchmark::State& state)
{
    auto names = viewsOf(asciiNames());
    names.resize(200);
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(IcuTextServices("en", kNoTables).orderOfNames(names));
}
BENCHMARK(firstOrderAfterStart)->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace tessel
