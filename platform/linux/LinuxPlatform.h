#pragma once

#include "platform/base/Error.h"
#include "platform/base/Platform.h"
#include "platform/linux/apps/DesktopFolders.h"

#include <memory>
#include <optional>
#include <string>

namespace tessel {

class StateStore;

struct LinuxPlatformOptions {
    std::string home;                 ///< made when it is missing; empty: $XDG_DATA_HOME/tesseldrive
    std::optional<std::string> drive; ///< an existing folder to show as the drive
    Clock* clock = nullptr;           ///< outlives the platform; null: the system's
    std::string locale;               ///< as ICU names it; empty: the user's
    std::optional<DesktopFolders> desktop = std::nullopt; ///< where applications are looked for; none: the user's
    std::string decoder = {};  ///< the program that reads documents; empty: where this one has it
    std::string player = {};   ///< the program that plays them, likewise
    bool keepsRecents = false; ///< the last documents become actions of the program's icon
};

/// Every service, on Linux, over the files of one home. Made, used and destroyed on the main thread. Several programs
/// may use one home at the same time.
class LinuxPlatform {
public:
    /// @returns an error whose description is one line for the user: the home cannot be made or used, or the drive is
    /// no
    ///          folder that can be read
    static Result<std::unique_ptr<LinuxPlatform>> create(const LinuxPlatformOptions&);

    ~LinuxPlatform();
    LinuxPlatform(const LinuxPlatform&) = delete;
    LinuxPlatform& operator=(const LinuxPlatform&) = delete;

    [[nodiscard]] platform::Services services();
    [[nodiscard]] StateStore& stateStore();
    /// Where the user was: the program's own, beside the state.
    [[nodiscard]] StateStore& sessionStore();

private:
    struct Parts;

    explicit LinuxPlatform(std::unique_ptr<Parts>);

    const std::unique_ptr<Parts> parts_;
};

} // namespace tessel
