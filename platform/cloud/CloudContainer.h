#pragma once

#include "platform/base/URL.h"

#include <string>

namespace tessel {

/// The cloud service's record of one application's documents: an app library, or the drive's own container.
struct CloudContainer {
    std::string identifier;
    URL documentsURL;
    std::string localizedName; ///< UTF-8, as shown to the user

    [[nodiscard]] std::string description() const { return identifier; }
};

} // namespace tessel
