#include "tests/support/OtherProcess.h"

#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <exception>
#include <stdexcept>
#include <utility>

namespace tessel {

namespace {

constexpr int kPatience = 30'000; // milliseconds

} // namespace

OtherProcess::OtherProcess(const std::function<void(OtherProcess&)>& work)
{
    int sockets[2] = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, sockets) != 0)
        throw std::runtime_error("no sockets");
    child_ = ::fork();
    const bool isChild = child_ == 0;
    socket_ = sockets[isChild ? 1 : 0];
    ::close(sockets[isChild ? 0 : 1]);
    if (!isChild)
        return;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    bool isDone = true;
    try {
        work(*this);
    } catch (const std::exception&) {
        isDone = false;
    }
    ::_exit(isDone ? 0 : 1);
}

OtherProcess::~OtherProcess()
{
    kill();
    ::close(socket_);
}

void OtherProcess::meet() const
{
    char byte = 0;
    pollfd answer = {socket_, POLLIN, 0};
    if (::send(socket_, &byte, 1, MSG_NOSIGNAL) != 1 || ::poll(&answer, 1, kPatience) <= 0 ||
        ::recv(socket_, &byte, 1, 0) != 1)
        throw std::runtime_error("the other process does not come");
}

void OtherProcess::kill()
{
    if (child_ <= 0)
        return;
    ::kill(child_, SIGKILL);
    (void)finish();
}

bool OtherProcess::finish()
{
    int status = 0;
    ::waitpid(std::exchange(child_, -1), &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace tessel
