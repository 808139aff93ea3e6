#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"

#include <cstdint>
#include <optional>

namespace tessel {

/// How much room the user says that the account has.
struct AccountSize {
    bool isUnlimited = false;
    std::optional<std::uint64_t> bytes = std::nullopt; ///< none: the user says nothing
};

/// The file of a home in which the user says it: {"accountSize": 5000000000}, or "unlimited" in place of the number.
[[nodiscard]] URL quotaFileIn(const URL& home);

/// @returns a corrupt-file error (259) for what is no such file; nothing is said by one that is missing
Result<AccountSize> readAccountSize(const URL& quotaFile);

} // namespace tessel
