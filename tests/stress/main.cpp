#include "tests/stress/Run.h"

#include <chrono>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <string_view>

namespace tessel {
namespace {

struct Options {
    RunOptions run;
    std::optional<int> minutes;
};

const std::map<std::string_view, Sabotage> kSabotages = {
    {"lose", Sabotage::Lose}, {"tear", Sabotage::Tear}, {"double", Sabotage::Double}, {"leave", Sabotage::Leave}};

// What a damage is to be found as.
const std::map<Sabotage, std::string> kFindings = {{Sabotage::Lose, "lost"},
                                                   {Sabotage::Tear, "torn"},
                                                   {Sabotage::Double, "half-moved"},
                                                   {Sabotage::Leave, "left over"}};

std::optional<Options> optionsIn(int count, char** words)
{
    Options options;
    for (int i = 1; i + 1 < count; i += 2) {
        const std::string_view name = words[i];
        const std::string value = words[i + 1];
        if (name == "--seed")
            options.run.seed = std::stoull(value);
        else if (name == "--operations")
            options.run.operations = std::stoi(value);
        else if (name == "--kills")
            options.run.kills = std::stoi(value);
        else if (name == "--minutes")
            options.minutes = std::stoi(value);
        else if (name == "--sabotage" && kSabotages.contains(value))
            options.run.sabotage = kSabotages.at(value);
        else
            return std::nullopt;
    }
    return count % 2 == 1 ? std::optional(options) : std::nullopt;
}

void printOutcomes(const RunResult& result)
{
    for (const auto& [what, counts] : result.outcomes) {
        std::cout << "  " << what << ':';
        for (const auto& [outcome, times] : counts)
            std::cout << ' ' << times << ' ' << outcome << ';';
        std::cout << '\n';
    }
}

void printResult(const RunResult& result)
{
    const auto& verdict = result.verdict;
    std::cout << "  " << result.operations << " operations, " << result.kills << " kills (" << result.killsInTheMiddle
              << " in the middle of an operation), " << result.seconds << " s\n  " << verdict.contents
              << " contents: " << verdict.found << " found (" << result.survey.inCloudOnly << " in the cloud only, "
              << result.survey.inTrash << " in the trash), " << verdict.deleted << " deleted, " << verdict.superseded
              << " superseded, " << verdict.undecided << " in the hands of the killed, " << verdict.inStoreAlone
              << " in the store alone; " << verdict.emptyFolders << " empty hidden folders left\n";
    for (const auto& [kind, texts] : verdict.findings)
        for (const auto& text : texts)
            std::cout << "  " << kind << ": " << text << '\n';
    if (!result.keptAt.empty())
        std::cout << "  kept at " << result.keptAt << '\n';
}

// Whether it is as it should be: sound, or damaged as ordered.
bool isAsExpected(const RunOptions& options, const Verdict& verdict)
{
    if (options.sabotage == Sabotage::None)
        return verdict.isSound();
    return verdict.findings.contains(kFindings.at(options.sabotage));
}

bool runOnce(const RunOptions& options)
{
    std::cout << "seed " << options.seed << std::endl;
    const auto result = runStress(options);
    printOutcomes(result);
    printResult(result);
    return isAsExpected(options, result.verdict);
}

// One seed after the other.
bool runFor(std::chrono::minutes time, RunOptions options)
{
    const auto end = std::chrono::steady_clock::now() + time;
    bool isSound = true;
    int runs = 0;
    for (; std::chrono::steady_clock::now() < end; ++options.seed, ++runs)
        isSound = runOnce(options) && isSound;
    std::cout << runs << " runs of " << options.operations << " operations and " << options.kills
              << " kills: " << (isSound ? "nothing lost" : "NOT SOUND") << std::endl;
    return isSound;
}

} // namespace
} // namespace tessel

/// tests_stress [--seed N] [--operations N] [--kills N] [--minutes N] [--sabotage lose|tear|double|leave]
int main(int count, char** words)
{
    ::unsetenv("XDG_RUNTIME_DIR"); // locks in the home of the run
    try {
        const auto options = tessel::optionsIn(count, words);
        if (!options) {
            std::cerr << "usage: " << words[0]
                      << " [--seed N] [--operations N] [--kills N] [--minutes N] [--sabotage lose|tear|double|leave]\n";
            return 2;
        }
        const bool isSound = options->minutes ? tessel::runFor(std::chrono::minutes(*options->minutes), options->run)
                                              : tessel::runOnce(options->run);
        return isSound ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return EXIT_FAILURE;
    }
}
