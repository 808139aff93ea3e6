#pragma once

#include "platform/apps/ApplicationRecord.h"
#include "platform/base/URL.h"

namespace tessel {

/// What other programs are asked to do with one document. Main thread only.
class DocumentInteractionController {
public:
    explicit DocumentInteractionController(URL document) : document_(std::move(document)) {}

    /// Has an application open the document itself. Why it could not is logged.
    void openInPlace(const ApplicationRecord&) const;

private:
    const URL document_;
};

} // namespace tessel
