#pragma once

#include "platform/ui/Application.h"

#include <optional>
#include <string>
#include <vector>

namespace tessel {

/// What the desktop asks of a program: to come to the front, and perhaps to show something.
struct OutsideRequest {
    std::vector<std::string> urls; ///< of the application's scheme, or of files; the last that can be shown is
    std::optional<ShortcutItem> shortcut;
    std::optional<UserActivity> activity = {}; ///< to be continued
    std::string activationToken;               ///< by which the desktop lets the window come to the front; may be empty
};

/// The application's own URL for a file; `mode` as its query has it, empty for none.
[[nodiscard]] std::string applicationURL(const std::string& path, const std::string& mode = {});
/// The same for a file URL; any other text unchanged.
[[nodiscard]] std::string applicationURLOf(const std::string& url, const std::string& mode = {});

/// Has the application do what is asked, but for coming to the front.
/// @returns the URLs of which nothing could be shown
std::vector<std::string> perform(Application&, const OutsideRequest&);

} // namespace tessel
