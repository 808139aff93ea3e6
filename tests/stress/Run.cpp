#include "tests/stress/Run.h"

#include "app/common/TesselDriveApp_StrataAdditions.h"
#include "platform/base/Platform.h"
#include "tests/stress/ConsoleUser.h"
#include "tests/stress/Editor.h"
#include "tests/stress/Member.h"
#include "tests/stress/SafeSave.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <exception>
#include <filesystem>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <utility>

namespace tessel {

namespace {

using Time = std::chrono::steady_clock;

constexpr int kProcesses = 5;
constexpr int kUsers = 2; // the first ones
constexpr int kAgent = 2;
constexpr int kEditor = 3;
constexpr int kAuditor = 5;          // who comes when the others have gone
constexpr int kUserPercent = 2;      // of all operations: theirs take long
constexpr int kPatience = 60'000;    // milliseconds
constexpr int kLongestDelay = 3'000; // microseconds
constexpr int kLongestDelayOfUsers = 30'000;

std::unique_ptr<Actor> actorFor(const Part& part, const Stage& stage, int ledger)
{
    switch (part.process) {
    case kAgent:
        return std::make_unique<Agent>(part, stage, ledger);
    case kEditor:
        return std::make_unique<Editor>(part, stage, ledger);
    case 0:
    case 1:
        return std::make_unique<ConsoleUser>(part, stage, ledger);
    default:
        return std::make_unique<Browser>(part, stage, ledger);
    }
}

// In a process of its own, which ends with it.
pid_t fork(const std::function<void()>& work)
{
    const pid_t child = ::fork();
    if (child != 0)
        return child;
    ::setpgid(0, 0); // it dies together with what it has started
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    int status = EXIT_SUCCESS;
    try {
        work();
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        status = EXIT_FAILURE;
    }
    ::_exit(status);
}

// As if some time had passed: files of a minute ago are nobody's any more.
void ageTemporaryFiles(const URL& folder)
{
    namespace fs = std::filesystem;
    for (const auto& entry : fs::directory_iterator(folder.path()))
        if (entry.is_regular_file() && entry.path().filename().native().starts_with('.'))
            fs::last_write_time(entry, fs::file_time_type::clock::now() - std::chrono::minutes(2));
}

// A last clean start: saves that were interrupted are gone on with, and all documents are asked for their identifiers.
void audit(const Stage& stage, int ledger)
{
    LedgerPen pen(ledger, kAuditor, 0);
    SafeSave::recoverAll(pen, "editor", stage);
    SafeSave::recoverAll(pen, "agent", stage);
    ageTemporaryFiles(stage.home());
    const auto platform = stage.startPlatform();
    const platform::Scope scope(platform->services());
    int operation = 0;
    for (const auto& [identifier, places] : surveyOf(stage).places)
        for (const auto& document : places) {
            pen.begin(operation++, {"identify", document.path()});
            pen.end({"done", std::to_string(tsd_DocumentID(document)), identifier});
        }
}

class Run {
public:
    explicit Run(const RunOptions& options) : options_(options), random_(options.seed) {}

    RunResult run()
    {
        planKills();
        for (int process = 0; process < kProcesses; ++process)
            start(process);
        while (std::ranges::any_of(members_, [](const Member& member) { return member.child > 0; }))
            step();
        runAudit();
        return judged();
    }

private:
    struct Member {
        pid_t child = -1;
        int generation = 0;
        int begun = 0;         ///< operations
        bool isAtWork = false; ///< on an operation
        std::string what;
    };

    // Spread over the whole run, with a delay into the operation at which a process dies.
    void planKills()
    {
        for (int i = 0; i < options_.kills; ++i)
            killsAt_.push_back(number(options_.operations * 9 / 10) + options_.operations / 50);
        std::ranges::sort(killsAt_, std::greater());
    }

    int number(int below) { return static_cast<int>(random_() % static_cast<std::uint64_t>(below)); }
    [[nodiscard]] int shareOf(int process) const
    {
        const int ofUser = options_.operations * kUserPercent / 100;
        return process < kUsers ? ofUser : (options_.operations - kUsers * ofUser) / (kProcesses - kUsers);
    }

    void start(int process)
    {
        auto& member = members_.at(static_cast<std::size_t>(process));
        const Part part = {options_.seed, process, member.generation, member.begun, shareOf(process), Sabotage::None};
        member.isAtWork = false;
        member.child = fork([&] { actorFor(part, stage_, ledger_.penSocket())->run(); });
    }

    void step()
    {
        const auto* line = ledger_.receive(1);
        if (line) {
            lastLine_ = Time::now();
            note(*line);
            if (const auto victim = std::exchange(victim_, std::nullopt))
                kill(*victim);
        } else if (Time::now() - lastLine_ > std::chrono::milliseconds(kPatience)) {
            throw std::runtime_error("nothing happens any more");
        } else {
            collect();
        }
    }

    void note(const LedgerLine& line)
    {
        auto& member = members_.at(static_cast<std::size_t>(line.process));
        if (line.kind == LedgerLine::Kind::End) {
            member.isAtWork = false;
            ++result_.outcomes[member.what][line.words.front()];
        }
        if (line.kind != LedgerLine::Kind::Begin)
            return;
        member.isAtWork = true;
        member.what = line.words.front();
        ++member.begun;
        ++result_.operations;
        if (killsAt_.empty() || result_.operations < killsAt_.back())
            return;
        killsAt_.pop_back();
        victim_ = number(3) == 0 ? number(kUsers) : line.process;
    }

    // Some way into the operation that it has just begun; what others write meanwhile waits in the ledger.
    void kill(int process)
    {
        auto& member = members_.at(static_cast<std::size_t>(process));
        if (member.child <= 0) // it has done its share: somebody else dies
            return killsAt_.push_back(result_.operations);
        const auto due =
            Time::now() + std::chrono::microseconds(number(process < kUsers ? kLongestDelayOfUsers : kLongestDelay));
        while (Time::now() < due) {
        }
        ::kill(-member.child, SIGKILL);
        ::waitpid(std::exchange(member.child, -1), nullptr, 0);
        while (ledger_.receive(0))
            noteLast();
        ledger_.add({LedgerLine::Kind::Kill, process, member.generation, member.begun - 1, {}});
        ++result_.kills;
        result_.killsInTheMiddle += member.isAtWork ? 1 : 0;
        if (member.isAtWork)
            ++result_.outcomes[member.what]["killed"];
        ++member.generation;
        start(process);
    }

    void noteLast() { note(LedgerLine(ledger_.lines().back())); }

    void collect()
    {
        for (auto& member : members_) {
            int status = 0;
            if (member.child <= 0 || ::waitpid(member.child, &status, WNOHANG) != member.child)
                continue;
            member.child = -1;
            if (!WIFEXITED(status) || WEXITSTATUS(status) != EXIT_SUCCESS)
                throw std::runtime_error("a process has ended badly");
        }
    }

    void runAudit()
    {
        while (ledger_.receive(0))
            noteLast();
        const Part damage = {options_.seed, kAgent, options_.kills + 1, 0, 0, options_.sabotage};
        const auto child = fork([&] {
            if (damage.sabotage != Sabotage::None)
                actorFor(damage, stage_, ledger_.penSocket())->run();
            audit(stage_, ledger_.penSocket());
        });
        int status = 0;
        while (::waitpid(child, &status, WNOHANG) == 0)
            (void)ledger_.receive(1);
        while (ledger_.receive(0)) {
        }
        if (!WIFEXITED(status) || WEXITSTATUS(status) != EXIT_SUCCESS)
            throw std::runtime_error("the last start has ended badly");
    }

    RunResult judged()
    {
        result_.survey = surveyOf(stage_);
        result_.verdict = judge(ledger_.lines(), result_.survey);
        result_.seconds = std::chrono::duration<double>(Time::now() - started_).count();
        if (!result_.verdict.isSound() && options_.sabotage == Sabotage::None) {
            stage_.keep();
            ledger_.writeTo(stage_.folder().appending("ledger"));
            result_.keptAt = stage_.folder().path();
        }
        return std::move(result_);
    }

    const RunOptions options_;
    Stage stage_;
    Ledger ledger_;
    std::array<Member, kProcesses> members_;
    std::mt19937_64 random_;
    std::vector<int> killsAt_; ///< counts of operations, the next one last
    std::optional<int> victim_;
    const Time::time_point started_ = Time::now();
    Time::time_point lastLine_ = Time::now();
    RunResult result_;
};

} // namespace

RunResult runStress(const RunOptions& options)
{
    return Run(options).run();
}

} // namespace tessel
