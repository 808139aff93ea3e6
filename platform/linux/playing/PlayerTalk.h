#pragma once

#include "platform/base/URL.h"
#include "platform/documents/DocumentDecoder.h"
#include "platform/linux/decoding/HelperProgram.h"
#include "platform/linux/playing/PlayerMessages.h"

#include <chrono>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>

namespace tessel {

class UnifiedLog;

/// What is said to one program that plays a document, and what it says, on a worker's thread.
class PlayerTalk {
public:
    /// The picture that came with a note, if one did that can be believed.
    using Hear = std::function<void(const PlayerNote&, const std::optional<ContentPicture>&)>;

    PlayerTalk(std::string program, std::chrono::milliseconds timeLimit, UnifiedLog&, URL);

    /// Starts the program and goes on until `end`, or until it has a problem, which is the last that is heard. Then
    /// the program is gone.
    void run(const Hear&);

    /// Any thread, at once. @returns the order's number
    std::uint32_t say(PlayerOrder);
    /// Any thread, at once.
    void end();

private:
    using Clock = std::chrono::steady_clock;

    [[nodiscard]] std::optional<ContentProblem> talk(HelperProgram&, const FileDescriptor& document, const Hear&);
    [[nodiscard]] bool sayAll(const HelperProgram&, const FileDescriptor& document);
    [[nodiscard]] std::optional<PlayerNote> hearOne(const HelperProgram&, const Hear&);
    [[nodiscard]] bool waitForSomething(const HelperProgram&, Clock::duration) const;
    [[nodiscard]] bool isEnding() const;
    void log(const char* what) const;

    const std::string program_;
    const std::chrono::milliseconds timeLimit_;
    UnifiedLog& log_;
    const URL url_;
    const FileDescriptor wake_;
    mutable std::mutex mutex_;
    std::deque<PlayerOrder> orders_;
    std::uint32_t lastOrder_ = 0;
    bool isEnding_ = false;
    std::uint32_t lastSaid_ = 0; ///< The worker's, as what follows.
    PlayerNote lastNote_;
};

} // namespace tessel
