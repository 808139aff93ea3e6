#include "platform/linux/run/TerminalLineSource.h"

#include "platform/run/MainQueue.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

namespace tessel {

namespace {

constexpr std::size_t kLongestLine = std::size_t{1} << 20U; ///< bytes
constexpr std::size_t kUsualColumns = 80;

void wake(int wakeUp)
{
    const std::uint64_t one = 1;
    // It fails only when the counter is full, and then the wake-up is already on its way.
    [[maybe_unused]] const auto written = ::write(wakeUp, &one, sizeof one);
}

void forget(int wakeUp)
{
    std::uint64_t wakes = 0;
    [[maybe_unused]] const auto size = ::read(wakeUp, &wakes, sizeof wakes);
}

timespec toTimespec(Clock::Ticks duration)
{
    const auto seconds = std::chrono::floor<std::chrono::seconds>(duration);
    return {seconds.count(), (duration - seconds).count()};
}

} // namespace

TerminalLineSource::TerminalLineSource(MainQueue& queue, int input)
    : input_(input), wakeUp_(std::make_shared<FileDescriptor>(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)))
{
    std::signal(SIGPIPE, SIG_IGN);
    queue.setWakeHandler([wakeUp = wakeUp_] { wake(wakeUp->get()); });
}

Input TerminalLineSource::next(std::optional<Clock::Ticks> timeout)
{
    for (;;) {
        if (EndSignals::isEndAsked())
            return {Input::Kind::End, {}};
        if (auto input = takeLine())
            return std::move(*input);
        if (ended_)
            return takeLast();
        if (!poll(WaitFor::InputAndWake, timeout))
            return {};
        readMore();
    }
}

void TerminalLineSource::waitForWake(Clock::Ticks timeout)
{
    poll(WaitFor::Wake, timeout);
}

std::size_t TerminalLineSource::columns() const
{
    winsize size{};
    return ::ioctl(input_, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsualColumns;
}

bool TerminalLineSource::poll(WaitFor what, std::optional<Clock::Ticks> timeout)
{
    std::array<pollfd, 3> descriptors{
        {{wakeUp_->get(), POLLIN, 0}, {endSignals_.descriptor(), POLLIN, 0}, {input_, POLLIN, 0}}};
    const timespec limit = toTimespec(timeout.value_or(Clock::Ticks::zero()));
    const nfds_t count = what == WaitFor::Wake ? 2 : 3;
    // A signal ends the wait like a wake-up; the caller looks around and waits again.
    if (::ppoll(descriptors.data(), count, timeout ? &limit : nullptr, nullptr) <= 0)
        return false;
    forget(wakeUp_->get());
    forget(endSignals_.descriptor());
    return what == WaitFor::InputAndWake && descriptors[2].revents != 0;
}

void TerminalLineSource::readMore()
{
    std::array<char, 65536> bytes;
    const auto count = ::read(input_, bytes.data(), bytes.size());
    if (count > 0)
        buffer_.append(bytes.data(), static_cast<std::size_t>(count));
    else if (count == 0 || (errno != EINTR && errno != EAGAIN))
        ended_ = true;
}

std::optional<Input> TerminalLineSource::takeLine()
{
    const auto end = buffer_.find('\n', searched_);
    if (end != std::string::npos) {
        auto line = buffer_.substr(0, end);
        buffer_.erase(0, end + 1);
        searched_ = 0;
        return checked(std::move(line));
    }
    if (buffer_.size() > kLongestLine) {
        skipping_ = true;
        buffer_.clear();
    }
    searched_ = buffer_.size();
    return std::nullopt;
}

Input TerminalLineSource::takeLast()
{
    if (buffer_.empty() && !skipping_)
        return {Input::Kind::End, {}};
    searched_ = 0;
    return checked(std::exchange(buffer_, {}));
}

Input TerminalLineSource::checked(std::string line)
{
    if (std::exchange(skipping_, false) || line.size() > kLongestLine)
        return {Input::Kind::TooLong, {}};
    return {Input::Kind::Line, std::move(line)};
}

} // namespace tessel
