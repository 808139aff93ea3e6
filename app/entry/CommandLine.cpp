#include "app/entry/CommandLine.h"

#include <string_view>

namespace tessel {

namespace {

struct Flag {
    std::string_view name;
    bool CommandLine::*member;
};

constexpr Flag kFlags[] = {
    {"--help", &CommandLine::showHelp},
    {"-h", &CommandLine::showHelp},
    {"--version", &CommandLine::showVersion},
    {"--console", &CommandLine::console},
    {"--gallery", &CommandLine::gallery},
    {"--json", &CommandLine::json},
    {"--log-private", &CommandLine::showPrivateLogArguments},
};

Error usageError(std::string text)
{
    return {Domain::General, ErrorCode::kUnsupported, std::move(text) + " (try --help)", {}};
}

bool setFlag(CommandLine& options, std::string_view name)
{
    for (const auto& flag : kFlags)
        if (flag.name == name)
            return options.*flag.member = true;
    return false;
}

bool takesValue(std::string_view name)
{
    return name == "--home" || name == "--drive" || name == "--log" || name == "--log-level";
}

std::optional<Error> setValue(CommandLine& options, std::string_view name, std::string_view value)
{
    if (value.empty())
        return usageError(std::string(name) + " needs a value");
    if (name == "--home")
        options.home = value;
    else if (name == "--drive")
        options.drive = value;
    else if (name == "--log")
        options.log = value;
    else if (!(options.logLevel = logLevelNamed(value)))
        return usageError("No log level is called " + std::string(value));
    return std::nullopt;
}

} // namespace

Result<CommandLine> CommandLine::parse(std::span<const char* const> arguments)
{
    CommandLine options;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        std::string_view argument = arguments[index];
        if (setFlag(options, argument))
            continue;
        const auto equals = argument.find('=');
        const auto name = argument.substr(0, equals);
        if (!takesValue(name))
            return usageError("Unknown option: " + std::string(argument));
        std::string_view value;
        if (equals != std::string_view::npos)
            value = argument.substr(equals + 1);
        else if (index + 1 < arguments.size())
            value = arguments[++index];
        if (const auto error = setValue(options, name, value))
            return *error;
    }
    return options;
}

std::string CommandLine::help()
{
    return R"(Usage: tesseldrive [OPTION]...
Browses the documents of a Tessel Drive: a folder on this device. Opens a window on Wayland or X.

  --home DIR         keep the drive and the program's records in DIR
                     (default: $XDG_DATA_HOME/tesseldrive); a new one gets a small example drive
  --drive DIR        show the folder DIR as the drive; nothing is added to it but attributes and .Trash
  --console          no window, also where there is a display: commands on standard input, one a line
                     ("help" lists them on a terminal); scripts give it always
  --json             print each screen of the console as one JSON object
  --gallery          show every kind of view that the program has, in place of the drive
  --log WHERE        log to "stderr", to a file, or not at all with "off" (default: the system's journal,
                     or a file under $XDG_STATE_HOME/tesseldrive)
  --log-level LEVEL  debug, info, warning or error (default: info; debug with --log)
  --log-private      show names and places in the log instead of <private>
  --help             print this text
  --version          print the version

Exit status: 0 when all went well, 1 when the parts of the window are not installed, 2 when an
option or a folder that it names cannot be used.
)";
}

} // namespace tessel
