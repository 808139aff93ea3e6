#include "platform/linux/run/EndSignals.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

namespace tessel {

namespace {

constexpr std::array kEndSignals{SIGINT, SIGTERM, SIGHUP};

static_assert(std::atomic<int>::is_always_lock_free, "a signal handler may use no other");
std::atomic<bool> endIsAsked = false;
std::atomic<int> endDescriptor = -1;

// Runs on any thread. It writes because a wait of the main thread ends only for a signal of its own.
extern "C" void askForTheEnd(int /*signal*/)
{
    const int errorNumber = errno;
    endIsAsked = true;
    for (const int signal : kEndSignals)
        std::signal(signal, SIG_DFL);
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(endDescriptor, &one, sizeof one);
    errno = errorNumber;
}

void handleEndSignals(void (*handler)(int))
{
    for (const int signal : kEndSignals) {
        struct sigaction action = {};
        if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN)
            continue;
        action = {};
        action.sa_handler = handler;
        action.sa_flags = SA_RESTART;
        ::sigaction(signal, &action, nullptr);
    }
}

} // namespace

EndSignals::EndSignals() : asked_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    endIsAsked = false;
    endDescriptor = asked_.get();
    handleEndSignals(askForTheEnd);
}

EndSignals::~EndSignals()
{
    handleEndSignals(SIG_DFL);
    endDescriptor = -1;
}

bool EndSignals::isEndAsked()
{
    return endIsAsked;
}

} // namespace tessel
