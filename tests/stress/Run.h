#pragma once

#include "tests/stress/Actor.h"
#include "tests/stress/Judge.h"

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tessel {

struct RunOptions {
    std::uint64_t seed = 1;
    int operations = 5000; ///< of all processes together
    int kills = 25;
    Sabotage sabotage = Sabotage::None; ///< by the sync agent
};

struct RunResult {
    Verdict verdict;
    Survey survey;
    int operations = 0;
    int kills = 0;
    int killsInTheMiddle = 0; ///< of an operation
    double seconds = 0;
    std::map<std::string, std::map<std::string, int>> outcomes; ///< counts, by operation
    std::string keptAt; ///< where drive and ledger are kept, when they do not agree
};

/// Has two users of the whole program, a browser that is one of its parts, a sync agent and an editor work on one
/// drive, kills them now and then, starts them again, and compares what is there in the end with the ledger. Throws
/// when a process ends badly or nothing happens for a minute.
[[nodiscard]] RunResult runStress(const RunOptions&);

} // namespace tessel
