#include "platform/cloud/QuotaFetchOperation.h"

#include "platform/base/Platform.h"
#include "platform/cloud/QuotaService.h"

#include <algorithm>
#include <limits>

namespace tessel {

namespace {

std::optional<std::int64_t> signedNumber(const std::optional<std::uint64_t>& bytes)
{
    constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
    if (!bytes)
        return std::nullopt;
    return static_cast<std::int64_t>(std::min(*bytes, static_cast<std::uint64_t>(kMost)));
}

} // namespace

void QuotaFetchOperation::operator()() const
{
    const auto freeBytes = platform::installed().quota.freeBytes(stop_);
    if (stop_.stop_requested())
        return;
    completion_(freeBytes ? Result(signedNumber(*freeBytes)) : Result<std::optional<std::int64_t>>(freeBytes.error()));
}

} // namespace tessel
