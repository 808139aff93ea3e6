#include "bench/BenchPlatform.h"
#include "files/RenamePrompt.h"

#include <benchmark/benchmark.h>

#include <string>

namespace tessel {
namespace {

// One character typed into a name of up to 255 bytes that the prompt then checks, and another taken away.
void typeIntoAPrompt(benchmark::State& state, const std::string& letter)
{
    const BenchPlatform platform;
    std::string name;
    while (name.size() + 2 * letter.size() <= 255)
        name += letter;
    const auto prompt =
        RenamePrompt::newWithFilename(name, [](const std::string&, bool&) { return FilenamePrompt::Text(); });
    const auto longer = name + letter;
    bool isLonger = false;
    for (auto _ : state)
        prompt->textField->setTextByUser((isLonger = !isLonger) ? longer : name);
    if (!prompt->defaultAction->enabled())
        state.SkipWithError("the name is refused");
}
BENCHMARK_CAPTURE(typeIntoAPrompt, ascii, std::string("n"));
BENCHMARK_CAPTURE(typeIntoAPrompt, ideographs, std::string("計"));

} // namespace
} // namespace tessel
