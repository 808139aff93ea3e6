#pragma once

#include "platform/console/Answer.h"
#include "platform/console/LogSwitch.h"
#include "platform/console/RunLoop.h"
#include "platform/console/ScreenElement.h"

#include <functional>
#include <span>
#include <string>

namespace tessel {

class Application;

/// How the console is used.
struct ConsoleOptions {
    bool interactive = false; ///< a person at a terminal: screens are drawn and rows have numbers
    bool json = false;
    bool showsPrivateLogArguments = false;
    bool usesEscapes = false; ///< the terminal understands ECMA-48 sequences
    std::function<std::size_t()> columns = [] { return std::size_t{80}; }; ///< the terminal's width at this moment
};

/// The words of the console and what each does. A command that is refused changes nothing. Main thread only.
class Commands {
public:
    using Arguments = std::span<const std::string>;

    Commands(Application& application, RunLoop& loop, const ConsoleOptions& options)
        : application_(application), loop_(loop), options_(options), log_(options.showsPrivateLogArguments)
    {
    }

    /// @param words the command's word and its arguments; at least one
    Answer run(Arguments words);

    /// What `screen` prints.
    [[nodiscard]] std::string screenText() const;
    [[nodiscard]] bool hasQuit() const { return hasQuit_; }

private:
    struct Command {
        std::string_view word;
        std::string_view parameters; ///< parted by blanks; those in brackets may be left out
        std::string_view summary;
        Answer (Commands::*run)(Arguments);
    };
    static const Command kCommands[];

    static Refusal checkArguments(const Command&, Arguments);

    Answer screen(Arguments);
    Answer tap(Arguments);
    Answer back(Arguments);
    Answer type(Arguments);
    Answer clear(Arguments);
    Answer pressReturn(Arguments);
    Answer action(Arguments);
    Answer peek(Arguments);
    Answer pop(Arguments);
    Answer release(Arguments);
    Answer search(Arguments);
    Answer open(Arguments);
    Answer shortcut(Arguments);
    Answer continueActivity(Arguments);
    Answer signIn(Arguments);
    Answer signOut(Arguments);
    Answer background(Arguments);
    Answer activate(Arguments);
    Answer resize(Arguments);
    Answer idiom(Arguments);
    Answer direction(Arguments);
    Answer wait(Arguments);
    Answer settle(Arguments);
    Answer path(Arguments);
    Answer log(Arguments);
    Answer help(Arguments);
    Answer quit(Arguments);

    Application& application_;
    RunLoop& loop_;
    const ConsoleOptions options_;
    LogSwitch log_;
    bool hasQuit_ = false;
};

} // namespace tessel
