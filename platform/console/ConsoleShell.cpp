#include "platform/console/ConsoleShell.h"

#include "platform/console/CommandWords.h"
#include "platform/console/ScreenPainter.h"
#include "platform/console/ScreenReader.h"
#include "platform/ui/Application.h"

#include <ostream>

namespace tessel {

namespace {

constexpr auto kPatience = std::chrono::seconds(2);
constexpr auto kFirstScreenPatience = std::chrono::seconds(60);

} // namespace

void ConsoleShell::run()
{
    loop_.runWhileBusy(kPatience);
    draw();
    prompt();
    while (output_.good() && !commands_.hasQuit()) {
        const auto input = loop_.nextInput();
        if (input.kind == Input::Kind::End)
            break;
        if (input.kind == Input::Kind::TooLong)
            reply(Answer::refused("the line is too long"));
        else
            execute(input.line);
        prompt();
    }
    if (!hadCommand_ && !options_.interactive) {
        loop_.runWhileBusy(kFirstScreenPatience);
        output_ << commands_.screenText() << std::flush;
    }
    application_.resignActive();
    loop_.runFor(Clock::Ticks::zero());
}

void ConsoleShell::execute(const std::string& line)
{
    const auto parsed = CommandWords::parse(line);
    if (parsed.refusal)
        return reply({parsed.refusal, {}});
    if (parsed.words.empty())
        return;
    const auto answer = commands_.run(parsed.words);
    if (!commands_.hasQuit())
        loop_.runWhileBusy(kPatience);
    reply(answer);
}

void ConsoleShell::reply(const Answer& answer)
{
    hadCommand_ = true;
    draw();
    output_ << answer.output;
    if (answer.refusal)
        output_ << "error: " << *answer.refusal << '\n';
    else if (!options_.interactive)
        output_ << "ok\n";
    output_ << std::flush;
}

void ConsoleShell::draw()
{
    if (options_.interactive && !options_.json && !commands_.hasQuit())
        output_ << ScreenPainter{options_.usesEscapes, options_.columns()}.paint(readScreen());
}

void ConsoleShell::prompt()
{
    if (options_.interactive && !commands_.hasQuit())
        output_ << "> " << std::flush;
}

} // namespace tessel
