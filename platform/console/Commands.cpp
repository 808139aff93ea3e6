#include "platform/console/Commands.h"

#include "platform/base/ControlCharacters.h"
#include "platform/base/Platform.h"
#include "platform/cloud/ActivityService.h"
#include "platform/cloud/CloudService.h"
#include "platform/console/ScreenFinder.h"
#include "platform/console/ScreenReader.h"
#include "platform/console/ScreenText.h"
#include "platform/console/ShownControllers.h"
#include "platform/documents/DocumentListController.h"
#include "platform/documents/PeekController.h"
#include "platform/log/StreamSink.h"
#include "platform/ui/Application.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace tessel {

namespace {

constexpr auto kSettleLimit = std::chrono::seconds(60);
constexpr double kLongestWait = 1e6; ///< seconds

std::string quoted(std::string_view text)
{
    return '"' + std::string(text) + '"';
}

/// The arguments of a command whose last one is a text, which needs no quotes: it is all that follows.
std::vector<std::string> withTextJoined(std::span<const std::string> words, std::size_t before)
{
    std::vector<std::string> arguments(words.begin(), words.begin() + static_cast<std::ptrdiff_t>(before + 1));
    for (const auto& word : words.subspan(before + 1))
        arguments.back() += ' ' + word;
    return arguments;
}

/// A finite decimal number that takes up the whole text.
std::optional<double> number(const std::string& text)
{
    double value = 0;
    const auto* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || rest != end || !std::isfinite(value))
        return std::nullopt;
    return value;
}

/// The row that a person at a terminal sees under this number, from 1; null for a text that is no such number.
const ScreenElement* numberedRow(const Screen& screen, const std::string& text)
{
    std::size_t wanted = 0;
    const auto* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, wanted);
    if (error != std::errc() || rest != end)
        return nullptr;
    for (const auto& element : screen)
        if (element.isRow() && --wanted == 0)
            return &element;
    return nullptr;
}

Answer answer(const std::optional<Error>& error)
{
    return error ? Answer::refused(error->description) : Answer();
}

} // namespace

const Commands::Command Commands::kCommands[] = {
    {"screen", "", "shows what is on the screen", &Commands::screen},
    {"tap", "NAME", "presses a row or a control", &Commands::tap},
    {"back", "", "presses the back button", &Commands::back},
    {"type", "TEXT", "types into the active text field", &Commands::type},
    {"clear", "", "empties the active text field", &Commands::clear},
    {"return", "", "presses the return key", &Commands::pressReturn},
    {"action", "NAME ACTION", "asks for an item's action", &Commands::action},
    {"peek", "NAME", "presses a row until its peek shows", &Commands::peek},
    {"pop", "", "presses on, from a peek", &Commands::pop},
    {"release", "", "lets go of a peek", &Commands::release},
    {"search", "TEXT", "types into the list's search field; \"\" ends the search", &Commands::search},
    {"open", "URL", "opens a URL of the application's scheme", &Commands::open},
    {"shortcut", "KIND [ID]", "presses a home-screen shortcut", &Commands::shortcut},
    {"continue", "KIND TEXT", "continues an activity", &Commands::continueActivity},
    {"background", "", "resigns active", &Commands::background},
    {"activate", "", "becomes active", &Commands::activate},
    {"sign-in", "NAME", "signs in to a cloud account", &Commands::signIn},
    {"sign-out", "", "signs out", &Commands::signOut},
    {"resize", "W H", "changes the window's size, in points", &Commands::resize},
    {"idiom", "phone|tablet", "changes the kind of device", &Commands::idiom},
    {"direction", "ltr|rtl", "changes the writing direction", &Commands::direction},
    {"wait", "SECONDS", "lets time pass", &Commands::wait},
    {"settle", "", "waits until nothing is under way", &Commands::settle},
    {"path", "NAME", "prints the file-system path of a row", &Commands::path},
    {"log", "on|off [LEVEL]", "copies the log to standard error from a level on", &Commands::log},
    {"help", "", "lists these words", &Commands::help},
    {"quit", "", "leaves", &Commands::quit},
};

Answer Commands::run(Arguments words)
{
    for (const auto& command : kCommands) {
        if (command.word != words.front())
            continue;
        auto arguments = words.subspan(1);
        std::vector<std::string> joined;
        const auto before = static_cast<std::size_t>(std::ranges::count(command.parameters, ' '));
        if (command.parameters.ends_with("TEXT") && arguments.size() > before)
            arguments = joined = withTextJoined(arguments, before);
        if (auto refusal = checkArguments(command, arguments))
            return Answer::refused(std::move(*refusal));
        return (this->*command.run)(arguments);
    }
    return Answer::refused("unknown command " + quoted(words.front()));
}

std::string Commands::screenText() const
{
    return options_.json ? screenJSON(readScreen()) : screenLines(readScreen());
}

Refusal Commands::checkArguments(const Command& command, Arguments arguments)
{
    const std::string usage = std::string(command.word) + (command.parameters.empty() ? "" : " ");
    std::size_t given = 0;
    std::string_view rest = command.parameters;
    while (!rest.empty()) {
        const auto parameter = rest.substr(0, rest.find(' '));
        rest.remove_prefix(std::min(parameter.size() + 1, rest.size()));
        if (given < arguments.size())
            ++given;
        else if (!parameter.starts_with('['))
            return "an argument is missing: " + usage + std::string(command.parameters);
    }
    if (given < arguments.size())
        return "too many arguments: " + usage + std::string(command.parameters);
    return std::nullopt;
}

Answer Commands::screen(Arguments)
{
    return options_.interactive && !options_.json ? Answer() : Answer::printing(screenText());
}

Answer Commands::tap(Arguments arguments)
{
    const auto screen = readScreen();
    if (options_.interactive)
        if (const auto* row = numberedRow(screen, arguments[0]))
            return {press({row, std::nullopt}), {}};
    return {press(findNamed(screen, arguments[0])), {}};
}

Answer Commands::back(Arguments)
{
    const auto navigation = ShownControllers::now().navigation;
    return navigation && navigation->pressBack() ? Answer() : Answer::refused("there is no back button");
}

Answer Commands::peek(Arguments arguments)
{
    const auto shown = ShownControllers::now();
    const auto screen = readScreen();
    const auto row = findRow(screen, arguments[0]);
    if (!row.element)
        return {row.refusal, {}};
    const auto list = std::dynamic_pointer_cast<DocumentListController>(shown.navigation->topViewController());
    const bool shows = list && !shown.peek && PeekController::peek(list, *row.element->url);
    return shows ? Answer() : Answer::refused(quoted(arguments[0]) + " has no peek");
}

Answer Commands::pop(Arguments)
{
    const auto peek = ShownControllers::now().peek;
    if (!peek)
        return Answer::refused("there is no peek on the screen");
    peek->pop();
    return {};
}

Answer Commands::release(Arguments)
{
    const auto peek = ShownControllers::now().peek;
    if (!peek)
        return Answer::refused("there is no peek on the screen");
    peek->release();
    return {};
}

Answer Commands::search(Arguments arguments)
{
    const auto shown = ShownControllers::now();
    const auto& list = shown.list;
    if (!list || shown.alert || !list->shouldShowSearch())
        return Answer::refused("there is no search field on the screen");
    list->startSearch(arguments[0]);
    return {};
}

Answer Commands::open(Arguments arguments)
{
    return application_.openURL(arguments[0]) ? Answer()
                                              : Answer::refused("the URL leads to nothing that can be shown");
}

Answer Commands::shortcut(Arguments arguments)
{
    const auto& kind = arguments[0];
    if (kind == "search" && arguments.size() == 1) {
        application_.performShortcut({ShortcutItem::kSearch, {}});
        return {};
    }
    if (kind != "recent" || arguments.size() != 2)
        return Answer::refused("a shortcut is search, or recent ID");
    std::uint64_t identifier = 0;
    const auto* const end = arguments[1].data() + arguments[1].size();
    const auto [rest, error] = std::from_chars(arguments[1].data(), end, identifier);
    if (error != std::errc() || rest != end)
        return Answer::refused("ID is the number of a document");
    application_.performShortcut({ShortcutItem::kRecentDocument,
                                  {{ShortcutItem::kDocumentIdentifierKey, static_cast<std::int64_t>(identifier)}}});
    return {};
}

Answer Commands::continueActivity(Arguments arguments)
{
    const auto& kind = arguments[0];
    UserActivity activity;
    if (kind == "query")
        activity = {UserActivity::kSearchQuery, {{UserActivity::kSearchQueryKey, arguments[1]}}};
    else if (kind == "result")
        activity = {UserActivity::kSearchResult, {{UserActivity::kSearchItemIdentifierKey, arguments[1]}}};
    else if (kind == "activity")
        activity = {ContinuationActivity::kViewing, {{ContinuationActivity::kDocumentURLKey, arguments[1]}}};
    else
        return Answer::refused("an activity is query TEXT, result ID or activity BOOKMARK");
    return application_.continueActivity(activity) ? Answer() : Answer::refused("the activity is not known");
}

Answer Commands::signIn(Arguments arguments)
{
    return answer(platform::installed().cloud.signIn(arguments[0]));
}

Answer Commands::signOut(Arguments)
{
    return answer(platform::installed().cloud.signOut());
}

Answer Commands::background(Arguments)
{
    application_.resignActive();
    return {};
}

Answer Commands::activate(Arguments)
{
    application_.becomeActive();
    return {};
}

Answer Commands::resize(Arguments arguments)
{
    const auto width = number(arguments[0]);
    const auto height = number(arguments[1]);
    if (!width || !height || *width <= 0 || *height <= 0)
        return Answer::refused("W and H are positive numbers");
    platform::installed().device.setScreenBounds({0, 0, *width, *height});
    return {};
}

Answer Commands::idiom(Arguments arguments)
{
    if (arguments[0] != "phone" && arguments[0] != "tablet")
        return Answer::refused("an idiom is phone or tablet");
    platform::installed().device.idiom = arguments[0] == "phone" ? Idiom::Phone : Idiom::Pad;
    return {};
}

Answer Commands::direction(Arguments arguments)
{
    if (arguments[0] != "ltr" && arguments[0] != "rtl")
        return Answer::refused("a direction is ltr or rtl");
    platform::installed().device.layoutDirection =
        arguments[0] == "ltr" ? LayoutDirection::LeftToRight : LayoutDirection::RightToLeft;
    return {};
}

Answer Commands::wait(Arguments arguments)
{
    const auto seconds = number(arguments[0]);
    if (!seconds || *seconds < 0 || *seconds > kLongestWait)
        return Answer::refused("SECONDS is a number from 0 to 1000000");
    loop_.runFor(std::chrono::duration_cast<Clock::Ticks>(std::chrono::duration<double>(*seconds)));
    return {};
}

Answer Commands::settle(Arguments)
{
    return loop_.settle(kSettleLimit) ? Answer() : Answer::refused("work is still under way after 60 seconds");
}

Answer Commands::path(Arguments arguments)
{
    const auto screen = readScreen();
    const auto row = findRow(screen, arguments[0]);
    return row.element ? Answer::printing("path: " + escapingControlCharacters(row.element->url->path()) + "\n")
                       : Answer{row.refusal, {}};
}

Answer Commands::log(Arguments arguments)
{
    if (arguments[0] == "off" && arguments.size() == 1) {
        log_.turnOff();
        return {};
    }
    if (arguments[0] != "on" || arguments.size() != 2)
        return Answer::refused("log takes on LEVEL, or off");
    const auto level = logLevelNamed(arguments[1]);
    if (!level)
        return Answer::refused("no log level is called " + quoted(arguments[1]));
    log_.turnOn(*level);
    return {};
}

Answer Commands::help(Arguments)
{
    std::string text;
    for (const auto& command : kCommands) {
        auto usage = "  " + std::string(command.word) + " " + std::string(command.parameters);
        usage.resize(std::max<std::size_t>(usage.size(), 24), ' ');
        text += usage + "  " + std::string(command.summary) + "\n";
    }
    return Answer::printing(std::move(text));
}

Answer Commands::quit(Arguments)
{
    hasQuit_ = true;
    return {};
}

} // namespace tessel
