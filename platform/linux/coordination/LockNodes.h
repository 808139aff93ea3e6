#pragma once

#include "platform/linux/coordination/AccessWish.h"

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace tessel {

/// How an access concerns one item on the way to what it wants. These are the modes of multiple granularity locking
/// (Gray, Lorie, Putzolu and Traiger 1975).
enum class LockMode {
    ReadsBelow,
    WritesBelow,
    Reads, ///< the item itself with all that is in it
    Writes,
};

/// One item as a place in the lock file: a range of bytes that no other item has. The ranges of two paths are the same
/// by chance alone (once in 2^38 pairs), and then one access waits for another without need.
struct LockNode {
    off_t start = 0; ///< of kLockNodeLength bytes
    LockMode mode = LockMode::ReadsBelow;
    std::string path;
};

inline constexpr off_t kLockNodeLength = off_t(1) << 24;
/// Below this place no node begins.
inline constexpr off_t kFirstLockNode = kLockNodeLength;
/// Nodes lie below this place.
inline constexpr off_t kLockNodesEnd = off_t(1) << 62;

/// Every item of the wishes and every folder above one, once each, in the strongest mode.
[[nodiscard]] std::vector<LockNode> lockNodesFor(const std::vector<AccessWish>&);

} // namespace tessel
