#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// Where a desktop's programs keep what they know of applications, the most important first (XDG Base Directory).
/// Folders need not exist.
struct DesktopFolders {
    std::vector<std::string> configuration; ///< hold "mimeapps.list"
    std::vector<std::string> data;          ///< hold "applications", with desktop entries and "mimeapps.list"
    std::vector<std::string> programs;      ///< hold programs that are called by their bare names
    std::vector<std::string> desktops;      ///< what the desktop that is running calls itself: "GNOME"

    /// Of the user who runs the program.
    [[nodiscard]] static DesktopFolders ofUser();

    /// The path of a program, named as the shell names it, that may be run; none for a relative path.
    [[nodiscard]] std::optional<std::string> findProgram(std::string_view name) const;
};

} // namespace tessel
