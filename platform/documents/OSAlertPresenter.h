#pragma once

#include "platform/base/URL.h"

#include <functional>
#include <memory>

namespace tessel {

class ViewController;

/// Asks the user, where the platform wants that, before the program is left for another one. On a desktop nobody is led
/// away: the other program's window opens beside this one. So nothing is asked, and the continuation runs at once.
class OSAlertPresenter {
public:
    OSAlertPresenter() = delete;

    /// @param continuation hands the document over; called before the call returns, or later, or never when the user
    ///                     stays
    static void presentBeforeLeaving(const URL& /*document*/, const std::shared_ptr<ViewController>& /*presenter*/,
                                     const std::function<void()>& continuation)
    {
        continuation();
    }
};

} // namespace tessel
