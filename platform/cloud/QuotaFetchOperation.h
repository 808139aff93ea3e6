#pragma once

#include "platform/base/Error.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <stop_token>

namespace tessel {

/// Asks the quota service once what is free of the account's room: an operation for a queue, on whose thread it
/// answers.
class QuotaFetchOperation {
public:
    /// @param result bytes; none where there is no limit, or none that is known
    using Completion = std::function<void(const Result<std::optional<std::int64_t>>& result)>;

    /// @param stop ends the fetch early; there is then no answer
    QuotaFetchOperation(Completion completion, std::stop_token stop)
        : completion_(std::move(completion)), stop_(std::move(stop))
    {
    }

    void operator()() const;

private:
    Completion completion_;
    std::stop_token stop_;
};

} // namespace tessel
