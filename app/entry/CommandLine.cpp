#include "app/entry/CommandLine.h"

#include <charconv>
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
    {"--new-instance", &CommandLine::newInstance},
    {"--continue", &CommandLine::continuesOthers},
    {"--dbus-service", &CommandLine::dbusService},
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
    return name == "--home" || name == "--drive" || name == "--log" || name == "--log-level" || name == "--shortcut" ||
           name == "--run-test" || name == "--option";
}

std::optional<Error> setShortcut(CommandLine& options, std::string_view value)
{
    constexpr std::string_view kRecent = "recent:";
    std::uint64_t number = 0;
    const auto digits = value.starts_with(kRecent) ? value.substr(kRecent.size()) : std::string_view();
    const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool isRecent = !digits.empty() && parsed.ec == std::errc() && parsed.ptr == digits.data() + digits.size();
    if (value == "search")
        options.shortcut = ShortcutItem{ShortcutItem::kSearch, {}};
    else if (isRecent)
        options.shortcut = ShortcutItem{ShortcutItem::kRecentDocument,
                                        {{ShortcutItem::kDocumentIdentifierKey, static_cast<std::int64_t>(number)}}};
    else
        return usageError("A shortcut is search, or recent:ID");
    return std::nullopt;
}

std::optional<Error> setTestOption(CommandLine& options, std::string_view value)
{
    const auto equals = value.find('=');
    if (equals == std::string_view::npos)
        return usageError("An option of a test is KEY=VALUE");
    options.testOptions[std::string(value.substr(0, equals))] = value.substr(equals + 1);
    return std::nullopt;
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
    else if (name == "--shortcut")
        return setShortcut(options, value);
    else if (name == "--run-test")
        options.runTest = value;
    else if (name == "--option")
        return setTestOption(options, value);
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
        if (!argument.starts_with('-')) {
            options.documents.emplace_back(argument);
            continue;
        }
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
    return R"(Usage: tesseldrive [OPTION]... [DOCUMENT]...
Browses the documents of a Tessel Drive: a folder on this device. Opens a window on Wayland or X, or has the one
that is open come to the front. A DOCUMENT, a URL or a path in the drive, is shown.

  --home DIR         keep the drive and the program's records in DIR
                     (default: $XDG_DATA_HOME/tesseldrive); a new one gets a small example drive
  --drive DIR        show the folder DIR as the drive; nothing is added to it but attributes and .Trash
  --console          no window, also where there is a display: commands on standard input, one a line
                     ("help" lists them on a terminal); scripts give it always
  --json             print each screen of the console as one JSON object
  --new-instance     open another window, whatever runs already
  --continue         open another window, with the document that is looked at in one that runs
  --shortcut WHAT    begin with "search", or with the document of "recent:ID"
  --run-test NAME    measure a test, such as "ScrollRows", with --option KEY=VALUE: container, iterations,
                     delta
  --dbus-service     started by the session's bus
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
