#pragma once

namespace tessel {

/// The program's fixed settings.
class Settings {
public:
    Settings() = delete;

    /// Whether a tapped document goes straight to an application or a preview.
    [[nodiscard]] static constexpr bool quickLaunch() { return true; }
};

} // namespace tessel
