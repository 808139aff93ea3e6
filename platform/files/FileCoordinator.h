#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"

#include <functional>
#include <optional>

namespace tessel {

enum class ReadingOptions {
    /// Only what is known at once is read: nothing is downloaded, and no writer is waited for.
    ImmediatelyAvailableMetadataOnly,
};

/// Access to items in agreement with the sync service and other programs. Synchronous: the accessor has run, on the
/// calling thread, when a call returns, or an error says why it has not.
class FileCoordinator {
public:
    using Accessor = std::function<void(const URL&)>;

    [[nodiscard]] std::optional<Error> coordinateReading(const URL&, ReadingOptions, const Accessor&);
};

} // namespace tessel
