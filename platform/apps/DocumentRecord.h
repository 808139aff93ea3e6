#pragma once

#include "platform/apps/ApplicationRegistry.h"

namespace tessel {

/// A document as the registry of applications sees it. It need not be on the device: its name tells its type.
class DocumentRecord {
public:
    explicit DocumentRecord(URL url) : url_(std::move(url)) {}

    [[nodiscard]] const URL& url() const { return url_; }
    /// The installed applications that can open it, by rank: as the registry answers now. Main thread only.
    [[nodiscard]] ApplicationRegistry::RankedApplications applicationsAvailableForOpening() const;

private:
    URL url_;
};

} // namespace tessel
