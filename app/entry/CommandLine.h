#pragma once

#include "platform/log/UnifiedLog.h"
#include "platform/ui/Application.h"

#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tessel {

/// What the user asked for when starting the program.
struct CommandLine {
    bool showHelp = false;
    bool showVersion = false;
    bool console = false;
    bool gallery = false;
    bool json = false;
    bool showPrivateLogArguments = false;
    bool newInstance = false;         ///< a window of its own, whatever runs already
    bool continuesOthers = false;     ///< begins with what the user looks at in another instance
    bool dbusService = false;         ///< started by the session's bus, which tells later what is wanted
    std::string home;                 ///< empty: the default place
    std::optional<std::string> drive; ///< an existing folder to show as the drive
    std::optional<std::string> log;   ///< "stderr", "off" or a file; none: the system's log
    std::optional<LogLevel> logLevel;
    std::vector<std::string> documents;   ///< URLs, and paths, to be shown
    std::optional<ShortcutItem> shortcut; ///< that the program is started by
    std::optional<std::string> runTest;   ///< the name of a test
    std::map<std::string, std::string> testOptions;

    /// @param arguments without the program's own name
    /// @returns the options, or an error whose description is one line for the user.
    static Result<CommandLine> parse(std::span<const char* const> arguments);

    /// The text of --help.
    [[nodiscard]] static std::string help();
};

} // namespace tessel
