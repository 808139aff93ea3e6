#include "app/common/Log.h"
#include "bench/BenchPlatform.h"
#include "platform/log/StreamSink.h"

#include <benchmark/benchmark.h>

#include <ostream>

namespace tessel {
namespace {

const URL& document()
{
    static const auto url = URL::file("/home/ada/Documents/Plan.txt");
    return url;
}

void logLines(benchmark::State& state)
{
    TSD_FUNCTION("logLines");
    for (auto _ : state)
        TSD_DEBUG("Creating directory: '%@'", document());
}

void lineThatIsOff(benchmark::State& state)
{
    BenchPlatform platform;
    logLines(state);
}
BENCHMARK(lineThatIsOff);

/// Where another level is on: the file that the program writes unless told otherwise.
void lineBelowTheLevelOfItsSink(benchmark::State& state)
{
    std::ostream nowhere(nullptr);
    const auto sink = std::make_shared<StreamSink>(nowhere);
    sink->minimumLevel = LogLevel::Info;
    BenchPlatform platform;
    platform.log.addSink(sink);
    logLines(state);
}
BENCHMARK(lineBelowTheLevelOfItsSink);

void lineThatGoesNowhere(benchmark::State& state)
{
    std::ostream nowhere(nullptr);
    BenchPlatform platform;
    platform.log.addSink(std::make_shared<StreamSink>(nowhere));
    logLines(state);
}
BENCHMARK(lineThatGoesNowhere);

} // namespace
} // namespace tessel
