// The desktop's search over a drive of a million names, some of which are texts: what it takes to make the index, to
// compare it with the drive at the next start, and to answer one question, at the 95th percentile.
#include "bench/BenchPlatform.h"
#include "platform/base/Platform.h"
#include "platform/linux/search/DriveIndexer.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <random>
#include <sys/resource.h>

namespace tessel {
namespace {

using std::chrono::steady_clock;

constexpr int kFolders = 1000;
constexpr int kItemsInEach = 1000;
constexpr int kTextsInEach = 20;
constexpr int kWordsOfText = 700;
constexpr const char* kWords[] = {"Report", "Invoice", "Holiday",  "Letter", "Bridge", "Garden",  "Plan",
                                  "Notes",  "Scan",    "Contract", "Photo",  "Budget", "Minutes", "Draft"};

double secondsSince(steady_clock::time_point begin)
{
    return std::chrono::duration<double>(steady_clock::now() - begin).count();
}

double processorSeconds()
{
    rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Megabytes that the process has, or had at most.
double megabytes(const std::string& key)
{
    std::ifstream file("/proc/self/status");
    for (std::string word; file >> word;)
        if (double kilobytes = 0; word == key && file >> kilobytes)
            return kilobytes / 1024;
    return 0;
}

std::string anyWord(std::mt19937& random)
{
    return kWords[random() % std::size(kWords)];
}

std::string anyName(std::mt19937& random)
{
    return anyWord(random) + ' ' + anyWord(random) + ' ' + std::to_string(random() % 100'000);
}

std::string anyText(std::mt19937& random)
{
    std::string text;
    for (int count = 0; count < kWordsOfText; ++count)
        text += (count % 3 == 0 ? anyWord(random) : "w" + std::to_string(random() % 50'000)) + ' ';
    return text;
}

void makeDrive(const URL& drive, std::mt19937& random)
{
    for (int number = 0; number < kFolders; ++number) {
        const auto folder = drive.path() + '/' + std::to_string(number) + '/';
        std::filesystem::create_directory(folder);
        for (int item = 0; item < kItemsInEach; ++item)
            if (item < kTextsInEach)
                std::ofstream(folder + anyName(random) + ".txt") << anyText(random);
            else
                std::ofstream(folder + anyName(random) + ".pdf");
    }
}

class Indexing {
public:
    /// @returns how many seconds it takes to bring the index to what is there
    double run()
    {
        const auto begin = steady_clock::now();
        FolderWatches watches(services_.log);
        DriveIndexer indexer(index_.value(), watches, {drive_}, {services_.log, services_.types, ends_});
        indexer.lookAtAll(DriveIndexer::Look::AtItems);
        while (indexer.step())
            watches.wait(-1, 0);
        return secondsSince(begin);
    }

    [[nodiscard]] const SearchIndex& index() const { return index_.value(); }
    [[nodiscard]] URL drive() const { return drive_; }

private:
    const BenchPlatform platform_;
    const TemporaryDrive folder_;
    const URL drive_ = folder_.folder("drive");
    const platform::Services services_ = platform::installed();
    Result<SearchIndex> index_ = SearchIndex::open(folder_.url("search.sqlite"), services_.log);
    const std::atomic<bool> ends_ = false;
};

void SearchesAMillionNames(benchmark::State& state)
{
    Indexing indexing;
    std::mt19937 random(1);
    makeDrive(indexing.drive(), random);
    const auto before = megabytes("VmRSS:");
    const auto processor = processorSeconds();
    state.counters["built_s"] = indexing.run();
    state.counters["built_cpu_s"] = processorSeconds() - processor;
    state.counters["more_memory_mb"] = megabytes("VmHWM:") - before;
    state.counters["compared_s"] = indexing.run();
    state.counters["size_mb"] = static_cast<double>(indexing.index().size()) / 1024 / 1024;
    std::vector<double> times;
    std::vector<double> timesOfTexts;
    const auto ask = [&](const std::vector<std::string>& question, std::vector<double>& kept) {
        const auto start = steady_clock::now();
        benchmark::DoNotOptimize(indexing.index().find(question, 100));
        kept.push_back(secondsSince(start) * 1000);
    };
    for (auto _ : state) {
        // As one types: one letter, two, a word, two words, a number; then words that only texts have.
        const auto word = anyWord(random);
        const auto other = anyWord(random);
        const auto number = std::to_string(random() % 50'000);
        ask({word.substr(0, 1)}, times);
        ask({word.substr(0, 2)}, times);
        ask({word}, times);
        ask({word, other.substr(0, 2)}, times);
        ask({word, other, number}, times);
        ask({"w" + number}, timesOfTexts);
        ask({"w" + number.substr(0, 3)}, timesOfTexts);
        ask({word, "w" + number.substr(0, 2)}, timesOfTexts);
    }
    times.insert(times.end(), timesOfTexts.begin(), timesOfTexts.end());
    for (const auto& [name, sorted] : {std::pair("", &times), std::pair("texts_", &timesOfTexts)}) {
        std::ranges::sort(*sorted);
        state.counters[std::string(name) + "p95_ms"] = (*sorted)[sorted->size() * 95 / 100];
        state.counters[std::string(name) + "longest_ms"] = sorted->back();
    }
    state.counters["limit_ms"] = 100;
}
BENCHMARK(SearchesAMillionNames)->Iterations(200)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tessel
