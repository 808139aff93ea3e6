#pragma once

#include "platform/linux/decoding/DecoderMessages.h"
#include "platform/linux/files/FileDescriptor.h"

#include <sys/types.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <string>

namespace tessel {

/// One running program that reads documents. It ends with this object at the latest, and leaves no zombie.
class DecoderProcess {
public:
    using Time = std::chrono::steady_clock::time_point;

    struct Outcome {
        enum class Kind { Answered, TooSlow, Died, NotStarted };

        Kind kind = Kind::Died;
        DecoderAnswer answer;
        FileDescriptor picture;
        int status = 0; ///< as `waitpid` gives it, of one that died
    };

    /// @returns null when the program cannot be started
    [[nodiscard]] static std::unique_ptr<DecoderProcess> start(const std::string& program);
    /// Kills it.
    ~DecoderProcess();
    DecoderProcess(const DecoderProcess&) = delete;
    DecoderProcess& operator=(const DecoderProcess&) = delete;

    /// Sends one request, once the program is ready, and waits for its answer. After any outcome but an answer the
    /// process is of no use any more.
    [[nodiscard]] Outcome exchange(const DecoderRequest&, const FileDescriptor& document, Time::duration limit);
    /// Has the exchange that is under way, or the next one, end at this time already; Time::max() takes that back. Any
    /// thread.
    void endBy(Time);

    [[nodiscard]] bool isFresh() const { return isFresh_; } ///< It has not been sent any document yet.

private:
    DecoderProcess(pid_t child, FileDescriptor socket, FileDescriptor wake);

    [[nodiscard]] bool waitUntilReady();
    [[nodiscard]] Outcome receiveUntil(Time deadline);
    [[nodiscard]] bool isReadableUntil(Time deadline);
    [[nodiscard]] int kill();

    pid_t child_;
    const FileDescriptor socket_;
    const FileDescriptor wake_;
    std::atomic<Time::rep> endBy_;
    bool isReady_ = false;
    bool isFresh_ = true;
};

} // namespace tessel
