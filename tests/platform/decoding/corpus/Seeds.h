#pragma once

#include <string>
#include <vector>

namespace tessel::corpus {

struct Seed {
    std::string name; ///< a file's
    std::string content;
    bool isWhole = true; ///< Its picture must be painted; else it is made to do harm.
};

/// Small sound documents of each kind, and what is not damaged but hostile: beyond all limits, or more than it seems.
[[nodiscard]] std::vector<Seed> seeds();

} // namespace tessel::corpus
