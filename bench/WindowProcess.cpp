#include "bench/WindowProcess.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <spawn.h>
#include <sstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace tessel {

namespace {

constexpr double kPatience = 60; ///< seconds

double now()
{
    const std::chrono::duration<double> time = std::chrono::steady_clock::now().time_since_epoch();
    return time.count();
}

std::vector<char*> pointers(std::vector<std::string>& texts)
{
    std::vector<char*> result;
    for (auto& text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

std::vector<std::string> environmentOf(const WindowProcess::Command& command)
{
    std::vector<std::string> result;
    for (auto** variable = environ; *variable; ++variable) {
        const std::string text = *variable;
        if (!text.starts_with("QT_") && (command.cache.empty() || !text.starts_with("XDG_CACHE_HOME=")))
            result.push_back(text);
    }
    result.emplace_back("QT_QPA_PLATFORM=offscreen");
    if (!command.cache.empty())
        result.push_back("XDG_CACHE_HOME=" + command.cache);
    if (!command.meter.empty())
        for (const auto& variable :
             {std::string("QT_PLUGIN_PATH=" TESSEL_METER_PLUGINS), std::string("QT_QPA_GENERIC_PLUGINS=tesselmeter"),
              "TESSEL_METER=" + command.meter, "TESSEL_METER_ROWS=" + std::to_string(command.rows)})
            result.push_back(variable);
    return result;
}

} // namespace

WindowProcess::WindowProcess(const Command& command)
{
    auto words = command.words;
    auto environment = environmentOf(command);
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    started_ = now();
    if (posix_spawn(&child_, words[0].c_str(), &actions, nullptr, pointers(words).data(),
                    pointers(environment).data()) != 0)
        child_ = -1;
    posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    output_ = ends[0];
    if (child_ > 0)
        ::clock_getcpuclockid(child_, &processorClock_);
}

WindowProcess::~WindowProcess()
{
    if (output_ >= 0)
        ::close(output_);
    if (child_ > 0) {
        ::kill(child_, SIGTERM);
        ::waitpid(child_, nullptr, 0);
    }
}

std::map<std::string, double> WindowProcess::readToEnd()
{
    std::string told;
    char bytes[4096];
    for (pollfd end{output_, POLLIN, 0}; ::poll(&end, 1, static_cast<int>(kPatience * 1000)) > 0;) {
        const auto count = ::read(output_, bytes, sizeof bytes);
        if (count <= 0)
            break;
        told.append(bytes, static_cast<std::size_t>(count));
    }
    std::map<std::string, double> found;
    std::istringstream words(told);
    std::string name;
    for (double number = 0; words >> name >> number;)
        found[name] = number;
    return found;
}

double WindowProcess::secondsToSettle()
{
    std::int64_t used = -1;
    for (double last = started_; now() - started_ < kPatience;) {
        const auto usedNow = processorNanoseconds();
        if (usedNow < 0)
            return 0;
        if (std::exchange(used, usedNow) != usedNow)
            last = now();
        else if (now() - last > 1)
            return last - started_;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return 0;
}

double WindowProcess::processorSecondsWithin(int seconds) const
{
    const auto before = processorNanoseconds();
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    return static_cast<double>(processorNanoseconds() - before) / 1e9;
}

double WindowProcess::peakMegabytes() const
{
    std::ifstream status("/proc/" + std::to_string(child_) + "/status");
    for (std::string word; status >> word;)
        if (word == "VmHWM:" && status >> word)
            return std::stod(word) / 1024;
    return 0;
}

std::int64_t WindowProcess::processorNanoseconds() const
{
    timespec time{};
    if (child_ <= 0 || ::clock_gettime(processorClock_, &time) != 0)
        return -1;
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

} // namespace tessel
