#include "bench/BenchPlatform.h"
#include "platform/documents/DocumentReader.h"
#include "platform/documents/TextContent.h"
#include "platform/linux/decoding/ProcessDecoder.h"
#include "platform/run/MainQueue.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <thread>

namespace tessel {

namespace {

constexpr std::size_t kLargeText = 1'000'000'000; // bytes
constexpr int kPages = 10'000;

void runUntil(const std::function<bool()>& condition)
{
    while (!condition())
        if (!DispatchQueue::main().runReady())
            std::this_thread::sleep_for(std::chrono::microseconds(100));
}

/// Of this process, in megabytes.
double memory()
{
    std::ifstream status("/proc/self/statm");
    double whole = 0;
    double resident = 0;
    status >> whole >> resident;
    return resident * 4096 / 1e6;
}

URL writeLargeText(const TemporaryDrive& folder)
{
    const auto url = folder.file("large.log");
    std::ofstream file(url.path(), std::ios::binary);
    std::string lines;
    for (int line = 0; lines.size() < 1'000'000; ++line)
        lines += "2026-11-23 07:00:00 [" + std::to_string(line) + "] a line of the log, as long as most of them are\n";
    for (std::size_t size = 0; size < kLargeText; size += lines.size())
        file << lines;
    return url;
}

/// Pages of one line of text, without compression.
URL writeBook(const TemporaryDrive& folder)
{
    const auto url = folder.file("book.pdf");
    std::string text = "%PDF-1.4\n";
    std::vector<std::size_t> places;
    const auto add = [&](const std::string& object) {
        places.push_back(text.size());
        text += std::to_string(places.size()) + " 0 obj\n" + object + "\nendobj\n";
    };
    std::string kids;
    for (int page = 0; page < kPages; ++page)
        kids += std::to_string(4 + 2 * page) + " 0 R ";
    add("<</Type/Catalog/Pages 2 0 R>>");
    add("<</Type/Pages/Count " + std::to_string(kPages) + "/Kids[" + kids + "]>>");
    add("<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>");
    for (int page = 0; page < kPages; ++page) {
        add("<</Type/Page/Parent 2 0 R/MediaBox[0 0 595 842]/Resources<</Font<</F 3 0 R>>>>/Contents " +
            std::to_string(5 + 2 * page) + " 0 R>>");
        const auto content = "BT /F 24 Tf 72 720 Td (Page " + std::to_string(page + 1) + ") Tj ET";
        add("<</Length " + std::to_string(content.size()) + ">>stream\n" + content + "\nendstream");
    }
    const auto table = text.size();
    text += "xref\n0 " + std::to_string(places.size() + 1) + "\n0000000000 65535 f \n";
    for (const auto place : places) {
        const auto digits = std::to_string(place);
        text += std::string(10 - digits.size(), '0') + digits + " 00000 n \n";
    }
    text += "trailer<</Root 1 0 R/Size " + std::to_string(places.size() + 1) + ">>\nstartxref\n" +
            std::to_string(table) + "\n%%EOF\n";
    std::ofstream(url.path(), std::ios::binary) << text;
    return url;
}

/// Until the first rows of a text of 1 GB can be shown. "all_ms": until all rows are found; memory in megabytes.
void openLargeText(benchmark::State& state)
{
    const BenchPlatform platform;
    const TemporaryDrive folder;
    const auto url = writeLargeText(folder);
    const auto before = memory();
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        std::shared_ptr<TextContent> text;
        const auto opening =
            platform::installed().documents.open(url, {.described = [](const auto&) {},
                                                       .downloaded = [](double) {},
                                                       .opened = [&](const auto& found) { text = found.text; }});
        runUntil([&] { return text != nullptr; });
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        runUntil([&] { return text->isComplete(); });
        const auto all = std::chrono::steady_clock::now() - start;
        state.counters["all_ms"] = std::chrono::duration<double, std::milli>(all).count();
        state.counters["more_MB"] = memory() - before;
        state.counters["lines"] = static_cast<double>(text->lineCount().value_or(0));
    }
}

/// Until a document of 10,000 pages is known and its last page is painted, by a process that is started for it.
void openBook(benchmark::State& state)
{
    const TemporaryDrive folder;
    const auto url = writeBook(folder);
    for (auto _ : state) {
        const BenchPlatform platform;
        const auto& services = platform::installed();
        ProcessDecoder decoder({services.mainQueue, services.log, services.types}, {.program = TESSELDRIVE_DECODER});
        const auto start = std::chrono::steady_clock::now();
        std::optional<ContentFacts> facts;
        decoder.inspect(url, [&](const ContentFacts& found) { facts = found; });
        runUntil([&] { return facts.has_value(); });
        state.counters["known_ms"] =
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
        state.counters["pages"] = facts->count;
        std::atomic<int> painted = 0;
        decoder.paint({url, kPages - 1, 375, 530, std::nullopt},
                      [&](const auto& picture, auto) { painted = picture ? 1 : -1; });
        runUntil([&] { return painted != 0; });
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        if (painted < 0)
            state.SkipWithError("the page was not painted");
    }
}

BENCHMARK(openLargeText)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(openBook)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
} // namespace tessel
