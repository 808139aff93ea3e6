#pragma once

#include "platform/cloud/ActivityService.h"

namespace tessel {

/// The program's fixed settings.
class Settings {
public:
    Settings() = delete;

    /// Whether a tapped document goes straight to an application or a preview.
    [[nodiscard]] static constexpr bool quickLaunch() { return true; }

    /// The type of activity under which a viewed document is offered to the user's other devices.
    [[nodiscard]] static constexpr const char* relayaTesselActivityType() { return ContinuationActivity::kViewing; }
};

} // namespace tessel
