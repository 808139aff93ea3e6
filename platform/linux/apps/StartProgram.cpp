#include "platform/linux/apps/StartProgram.h"

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <string_view>

namespace tessel {

namespace {

// The second is what older toolkits read.
constexpr std::array<std::string_view, 2> kTokenVariables = {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"};

/// This program's, but for a token of its own start.
std::vector<std::string> environmentWith(const std::string& activationToken)
{
    std::vector<std::string> result;
    for (char** variable = environ; variable && *variable; ++variable) {
        const std::string_view text = *variable;
        const auto name = text.substr(0, text.find('='));
        if (name != kTokenVariables[0] && name != kTokenVariables[1])
            result.emplace_back(text);
    }
    if (!activationToken.empty())
        for (const auto name : kTokenVariables)
            result.push_back(std::string(name) + "=" + activationToken);
    return result;
}

std::vector<char*> pointers(std::vector<std::string>& texts)
{
    std::vector<char*> result;
    for (auto& text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

/// What happens in the child before the program begins. The steps only fail for want of memory, and then stay away.
class SpawnSteps {
public:
    explicit SpawnSteps(const ProgramStart& start)
    {
        ::posix_spawn_file_actions_init(&actions);
        if (start.input < 0)
            ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        else
            ::posix_spawn_file_actions_adddup2(&actions, start.input, STDIN_FILENO);
        ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        addChannel(start.channel);
        ::posix_spawn_file_actions_addchdir_np(&actions, start.workingFolder.c_str());
        ::posix_spawnattr_init(&attributes);
        sigset_t signals;
        ::sigemptyset(&signals);
        ::posix_spawnattr_setsigmask(&attributes, &signals);
        ::sigfillset(&signals);
        ::posix_spawnattr_setsigdefault(&attributes, &signals);
        ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~SpawnSteps()
    {
        ::posix_spawn_file_actions_destroy(&actions);
        ::posix_spawnattr_destroy(&attributes);
    }
    SpawnSteps(const SpawnSteps&) = delete;
    SpawnSteps& operator=(const SpawnSteps&) = delete;

    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;

private:
    void addChannel(int channel)
    {
        constexpr int kFirst = STDERR_FILENO + 1;
        if (channel < 0)
            ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        else
            ::posix_spawn_file_actions_adddup2(&actions, channel, kFirst);
        ::posix_spawn_file_actions_addclosefrom_np(&actions, channel < 0 ? kFirst : kFirst + 1);
    }
};

} // namespace

int startProgram(const ProgramStart& start, pid_t& child)
{
    auto arguments = start.arguments;
    auto environment = environmentWith(start.activationToken);
    const auto argumentPointers = pointers(arguments);
    const auto environmentPointers = pointers(environment);
    const SpawnSteps steps(start);
    return ::posix_spawn(&child, start.path.c_str(), &steps.actions, &steps.attributes, argumentPointers.data(),
                         environmentPointers.data());
}

} // namespace tessel
