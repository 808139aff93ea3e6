#pragma once

#include "platform/base/URL.h"

#include <optional>
#include <string>
#include <vector>

namespace tessel {

/// The cloud service's record of one application's documents: an app library, or the drive's own container.
struct CloudContainer {
    std::string identifier;
    URL documentsURL;
    std::string localizedName; ///< UTF-8, as shown to the user
    /// How deep folders may be nested in it, "None", "One" or "Any"; absent means without limit.
    std::optional<std::string> depthOption;
    std::vector<std::string> documentTypes; ///< type identifiers of the documents that it is for
    std::vector<std::string> owners;        ///< identifiers of the applications that it belongs to

    [[nodiscard]] std::string description() const { return identifier; }
};

} // namespace tessel
