#include "tests/support/Program.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace tessel {

namespace {

constexpr int kPatience = 30'000; ///< milliseconds

std::vector<char*> pointers(std::vector<std::string>& texts)
{
    std::vector<char*> result;
    for (auto& text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

std::array<int, 2> makePipe()
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    return ends;
}

void closeOnce(int& descriptor)
{
    if (descriptor >= 0)
        ::close(std::exchange(descriptor, -1));
}

} // namespace

Program::Program(const std::vector<std::string>& arguments, std::optional<uid_t> user,
                 const std::vector<std::string>& moreEnvironment)
{
    std::vector<std::string> words = {std::string(TESSELDRIVE_PROGRAM)};
    words.insert(words.end(), arguments.begin(), arguments.end());
    // Nothing of the developer's own home, language or session reaches the program, and none of the applications. The
    // first of two variables of one name is the one that counts.
    auto environment = moreEnvironment;
    environment.insert(environment.end(), {"HOME=/nonexistent", "XDG_CONFIG_DIRS=/nonexistent",
                                           "XDG_DATA_DIRS=/nonexistent", "LC_ALL=C.UTF-8", "TZ=UTC"});
    if (const auto* leaks = std::getenv("LSAN_OPTIONS"))
        environment.push_back("LSAN_OPTIONS=" + std::string(leaks));
    const auto argumentPointers = pointers(words);
    const auto environmentPointers = pointers(environment);
    const auto input = makePipe();
    const auto output = makePipe();
    error_ = ::memfd_create("error", MFD_CLOEXEC);
    std::signal(SIGPIPE, SIG_IGN);

    child_ = ::fork();
    if (child_ == 0) {
        std::signal(SIGPIPE, SIG_DFL);
        ::dup2(input[0], STDIN_FILENO);
        ::dup2(output[1], STDOUT_FILENO);
        ::dup2(error_, STDERR_FILENO);
        if (user && (::setgroups(0, nullptr) != 0 || ::setgid(*user) != 0 || ::setuid(*user) != 0))
            ::_exit(126);
        ::execve(argumentPointers[0], argumentPointers.data(), environmentPointers.data());
        ::_exit(127);
    }
    ::close(input[0]);
    ::close(output[1]);
    input_ = input[1];
    output_ = output[0];
}

Program::~Program()
{
    closeOnce(input_);
    closeOnce(output_);
    closeOnce(error_);
    if (child_ > 0) {
        ::kill(child_, SIGKILL);
        ::waitpid(child_, nullptr, 0);
    }
}

Program::Reply Program::send(std::string_view command)
{
    write(std::string(command) + "\n");
    Reply reply;
    for (;;) {
        auto line = readLine();
        if (line == "ok" || line.starts_with("error: ")) {
            reply.answer = std::move(line);
            return reply;
        }
        reply.lines.push_back(std::move(line));
    }
}

std::vector<std::string> Program::screen()
{
    auto lines = send("screen").lines;
    std::erase_if(lines, [](const std::string& line) { return line.starts_with("status: "); });
    return lines;
}

void Program::write(std::string_view bytes) const
{
    while (!bytes.empty()) {
        const auto written = ::write(input_, bytes.data(), bytes.size());
        if (written < 0)
            throw std::runtime_error("the program reads no more");
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

void Program::closeOutput()
{
    closeOnce(output_);
}

void Program::signal(int number) const
{
    ::kill(child_, number);
}

Program::Result Program::finish()
{
    closeOnce(input_);
    while (output_ >= 0 && readMore()) {
    }
    int status = 0;
    ::waitpid(std::exchange(child_, -1), &status, 0);
    Result result{WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), std::move(unread_), {}};
    std::array<char, 4096> bytes;
    off_t offset = 0;
    for (ssize_t count; (count = ::pread(error_, bytes.data(), bytes.size(), offset)) > 0; offset += count)
        result.error.append(bytes.data(), static_cast<std::size_t>(count));
    return result;
}

Program::Result Program::run(const std::vector<std::string>& arguments, std::string_view input)
{
    Program program(arguments);
    program.write(input);
    return program.finish();
}

bool Program::readMore()
{
    pollfd descriptor{output_, POLLIN, 0};
    if (::poll(&descriptor, 1, kPatience) <= 0) {
        ::kill(child_, SIGKILL);
        throw std::runtime_error("the program does not answer; so far: " + unread_);
    }
    std::array<char, 65536> bytes;
    const auto count = ::read(output_, bytes.data(), bytes.size());
    if (count > 0)
        unread_.append(bytes.data(), static_cast<std::size_t>(count));
    return count > 0;
}

std::string Program::readLine()
{
    auto end = unread_.find('\n');
    for (; end == std::string::npos; end = unread_.find('\n'))
        if (!readMore())
            throw std::runtime_error("the program ended in the middle of an answer: " + unread_);
    auto line = unread_.substr(0, end);
    unread_.erase(0, end + 1);
    return line;
}

} // namespace tessel
