#include "platform/linux/decoding/DecoderProcess.h"

#include "platform/linux/decoding/DecoderChannel.h"
#include "platform/linux/decoding/HelperProgram.h"
#include "platform/linux/files/Uninterrupted.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace tessel {

namespace {

constexpr auto kStartLimit = std::chrono::seconds(10);

} // namespace

std::unique_ptr<DecoderProcess> DecoderProcess::start(const std::string& program)
{
    FileDescriptor wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    auto helper = wake.isOpen() ? startHelper(program) : std::nullopt;
    if (!helper)
        return nullptr;
    return std::unique_ptr<DecoderProcess>(
        new DecoderProcess(helper->process, std::move(helper->socket), std::move(wake)));
}

DecoderProcess::DecoderProcess(pid_t child, FileDescriptor socket, FileDescriptor wake)
    : child_(child), socket_(std::move(socket)), wake_(std::move(wake)), endBy_(Time::max().time_since_epoch().count())
{
}

DecoderProcess::~DecoderProcess()
{
    (void)kill();
}

DecoderProcess::Outcome DecoderProcess::exchange(const DecoderRequest& request, const FileDescriptor& document,
                                                 Time::duration limit)
{
    Outcome outcome;
    if (!waitUntilReady()) {
        outcome.kind = Outcome::Kind::NotStarted;
        return outcome;
    }
    isFresh_ = false;
    if (send(socket_.get(), request, document.get()))
        return receiveUntil(std::chrono::steady_clock::now() + limit);
    outcome.status = kill();
    return outcome;
}

bool DecoderProcess::waitUntilReady()
{
    isReady_ = isReady_ || receiveUntil(std::chrono::steady_clock::now() + kStartLimit).kind == Outcome::Kind::Answered;
    return isReady_;
}

void DecoderProcess::endBy(Time time)
{
    endBy_ = time.time_since_epoch().count();
    (void)::eventfd_write(wake_.get(), 1);
}

DecoderProcess::Outcome DecoderProcess::receiveUntil(Time deadline)
{
    Outcome outcome;
    if (!isReadableUntil(deadline)) {
        outcome.kind = Outcome::Kind::TooSlow;
        outcome.status = kill();
    } else if (const auto answer = receive<DecoderAnswer>(socket_.get(), outcome.picture)) {
        outcome.kind = Outcome::Kind::Answered;
        outcome.answer = *answer;
    } else {
        outcome.status = kill();
    }
    return outcome;
}

bool DecoderProcess::isReadableUntil(Time deadline)
{
    while (true) {
        const auto end = std::min(deadline, Time(Time::duration(endBy_)));
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now()).count();
        const auto wait = std::clamp<std::int64_t>(left, 0, std::numeric_limits<int>::max());
        pollfd descriptors[] = {{socket_.get(), POLLIN, 0}, {wake_.get(), POLLIN, 0}};
        const int ready = uninterrupted([&] { return ::poll(descriptors, 2, static_cast<int>(wait)); });
        if (ready <= 0 || descriptors[0].revents != 0)
            return ready > 0;
        eventfd_t ignored = 0;
        (void)::eventfd_read(wake_.get(), &ignored);
    }
}

/// @returns how it ended, which may have been before
int DecoderProcess::kill()
{
    const auto child = std::exchange(child_, -1);
    return child < 0 ? 0 : endHelper(child);
}

} // namespace tessel
