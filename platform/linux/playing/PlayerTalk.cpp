#include "platform/linux/playing/PlayerTalk.h"

#include "platform/linux/decoding/DecoderChannel.h"
#include "platform/linux/decoding/OpenForDecoding.h"
#include "platform/linux/decoding/ReceivedPicture.h"
#include "platform/linux/files/Uninterrupted.h"
#include "platform/log/UnifiedLog.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>

#include <algorithm>
#include <utility>

namespace tessel {

namespace {

PlayerNote noteOf(ContentProblem problem)
{
    PlayerNote note;
    note.problem = static_cast<std::int32_t>(problem) + 1;
    return note;
}

} // namespace

PlayerTalk::PlayerTalk(std::string program, std::chrono::milliseconds timeLimit, UnifiedLog& log, URL url)
    : program_(std::move(program)), timeLimit_(timeLimit), log_(log), url_(std::move(url)),
      wake_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    say({.work = PlayerOrder::Work::Open});
}

void PlayerTalk::run(const Hear& hear)
{
    const auto document = openForDecoding(url_);
    if (document.problem)
        return hear(noteOf(*document.problem), std::nullopt);
    auto helper = isEnding() || !wake_.isOpen() ? std::nullopt : startHelper(program_);
    if (!helper)
        return hear(noteOf(ContentProblem::NotPlayable), std::nullopt);
    ::fcntl(helper->socket.get(), F_SETFL, O_NONBLOCK); // one that does not listen is not waited for
    const auto problem = talk(*helper, document.file, hear);
    (void)endHelper(helper->process);
    if (problem)
        hear(noteOf(*problem), std::nullopt);
}

std::uint32_t PlayerTalk::say(PlayerOrder order)
{
    const std::lock_guard lock(mutex_);
    order.number = ++lastOrder_;
    orders_.push_back(order);
    (void)::eventfd_write(wake_.get(), 1);
    return order.number;
}

void PlayerTalk::end()
{
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
    (void)::eventfd_write(wake_.get(), 1);
}

bool PlayerTalk::isEnding() const
{
    const std::lock_guard lock(mutex_);
    return isEnding_;
}

/// @returns none when it was to end
std::optional<ContentProblem> PlayerTalk::talk(HelperProgram& helper, const FileDescriptor& document, const Hear& hear)
{
    auto lastHeard = Clock::now();
    while (!isEnding()) {
        if (!sayAll(helper, document))
            return log("ended, or does not listen"), ContentProblem::NotPlayable;
        const bool isAnswerDue = lastNote_.number != lastSaid_ || lastNote_.isOpen != 1 || lastNote_.isPlaying == 1;
        if (!isAnswerDue)
            lastHeard = Clock::now();
        const auto left = lastHeard + timeLimit_ - Clock::now();
        if (left <= Clock::duration::zero())
            return log("does not answer"), ContentProblem::NotPlayable;
        if (!waitForSomething(helper, left))
            continue;
        const auto note = hearOne(helper, hear);
        if (!note)
            return log("ended"), ContentProblem::NotPlayable;
        if (note->problem != 0)
            return std::nullopt; // it has been heard
        lastHeard = Clock::now();
    }
    return std::nullopt;
}

/// @returns false when the program takes nothing any more
bool PlayerTalk::sayAll(const HelperProgram& helper, const FileDescriptor& document)
{
    std::deque<PlayerOrder> orders;
    {
        const std::lock_guard lock(mutex_);
        orders.swap(orders_);
    }
    for (const auto& order : orders) {
        const bool isOpening = order.work == PlayerOrder::Work::Open;
        if (!send(helper.socket.get(), order, isOpening ? document.get() : -1))
            return false;
        lastSaid_ = order.number;
    }
    return true;
}

/// @returns none when the program is gone
std::optional<PlayerNote> PlayerTalk::hearOne(const HelperProgram& helper, const Hear& hear)
{
    FileDescriptor file;
    const auto note = receive<PlayerNote>(helper.socket.get(), file);
    if (!note)
        return std::nullopt;
    std::optional<ContentPicture> picture;
    if (file.isOpen()) {
        DecoderAnswer answer;
        answer.width = note->width;
        answer.height = note->height;
        answer.isOpaque = 1;
        picture = receivedPicture(answer, file);
    }
    lastNote_ = *note;
    hear(*note, picture);
    return note;
}

/// @returns whether the program has said something, or has ended
bool PlayerTalk::waitForSomething(const HelperProgram& helper, Clock::duration limit) const
{
    constexpr std::int64_t kLongestWait = 60'000;
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(limit).count();
    pollfd descriptors[] = {{helper.socket.get(), POLLIN, 0}, {wake_.get(), POLLIN, 0}};
    (void)uninterrupted(
        [&] { return ::poll(descriptors, 2, static_cast<int>(std::clamp<std::int64_t>(wait, 0, kLongestWait))); });
    eventfd_t ignored = 0;
    (void)::eventfd_read(wake_.get(), &ignored);
    return descriptors[0].revents != 0;
}

void PlayerTalk::log(const char* what) const
{
    log_.write(LogLevel::Warning, "The program that plays documents %s: %@", what, url_);
}

} // namespace tessel
