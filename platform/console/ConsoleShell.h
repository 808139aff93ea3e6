#pragma once

#include "platform/console/Commands.h"
#include "platform/console/RunLoop.h"

#include <iosfwd>

namespace tessel {

/// The whole application without a window: reads commands, drives the controllers of the key window with them, and
/// prints what is on the screen. Main thread only.
class ConsoleShell {
public:
    /// The arguments outlive the shell.
    ConsoleShell(Application& application, LineSource& source, std::ostream& output, const ConsoleOptions& options)
        : application_(application), output_(output), options_(options), loop_(source),
          commands_(application, loop_, options)
    {
    }

    /// Runs a launched application until `quit`, the end of the input, or the loss of the output; it then resigns
    /// active.
    void run();

private:
    void execute(const std::string& line);
    void reply(const Answer&);
    void draw();
    void prompt();

    Application& application_;
    std::ostream& output_;
    const ConsoleOptions options_;
    RunLoop loop_;
    Commands commands_;
    bool hadCommand_ = false;
};

} // namespace tessel
