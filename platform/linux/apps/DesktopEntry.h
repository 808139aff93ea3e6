#pragma once

#include "platform/base/URL.h"
#include "platform/linux/apps/ExecLine.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// An application as its desktop entry describes it (Desktop Entry Specification, freedesktop).
struct DesktopEntry {
    URL file;
    std::string identifier;       ///< of the file, without its suffix: "org.example.Editor"
    std::string name;             ///< in no language
    std::string localizedName;    ///< in the user's language; never empty
    std::optional<ExecLine> exec; ///< none: it cannot be run
    std::string tryExec;          ///< a program whose absence says that the application is not installed; mostly empty
    std::string icon;
    std::string workingFolder; ///< empty: none in particular
    std::optional<std::string> version;
    std::vector<std::string> mimeTypes; ///< as written
    bool isInTerminal = false;
    bool isShownHere = true; ///< not meant for other desktops only
};

struct DesktopEntryOptions {
    std::string locale;                ///< as ICU names it: "de_DE", "sr_Latn_RS"
    std::vector<std::string> desktops; ///< what the desktop that is running calls itself
};

/// @param text the content of `file`
/// @returns none for what is no application, has no name, or counts as deleted ("Hidden")
[[nodiscard]] std::optional<DesktopEntry> parsedDesktopEntry(std::string_view text, const URL& file,
                                                             std::string identifier, const DesktopEntryOptions&);

} // namespace tessel
