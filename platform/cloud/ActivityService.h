#pragma once

#include "platform/base/Error.h"
#include "platform/base/Value.h"

#include <memory>
#include <string>

namespace tessel {

/// What the user does in a program, so that it can be continued elsewhere.
struct ContinuationActivity {
    /// Of `userInfo`: the document that is looked at, as a bookmarkable string (see CloudService).
    static constexpr const char* kDocumentURLKey = "DocumentURL";

    static constexpr const char* kViewing = "orvane.quillbox.viewing"; ///< a type: a document is looked at

    std::string type;
    bool isEligibleForContinuation = false; ///< on the user's other devices
    Value::Dictionary userInfo;
};

/// Offers what the user does to the user's other devices, and to other instances of the program. Safe from any thread.
class ActivityService {
public:
    virtual ~ActivityService() = default;

    /// In the place of the one that was current. It does not change from now on.
    virtual void becomeCurrent(const std::shared_ptr<const ContinuationActivity>&) = 0;
    /// Nothing when another one is current by now.
    virtual void resignCurrent(const ContinuationActivity&) = 0;
    /// The one that became current last in another instance of the same account; reads files.
    /// @returns a no-such-file error where there is none, or why it cannot be read
    [[nodiscard]] virtual Result<ContinuationActivity> newestOfOthers() const = 0;
};

} // namespace tessel
