#include "platform/files/FileCoordinator.h"

namespace tessel {

std::optional<Error> FileCoordinator::coordinateReading(const URL& url, ReadingOptions, const Accessor& accessor)
{
    accessor(url);
    return std::nullopt;
}

} // namespace tessel
