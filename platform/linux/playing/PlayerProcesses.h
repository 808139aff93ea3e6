#pragma once

#include "platform/base/URL.h"
#include "platform/run/OperationQueue.h"

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace tessel {

class MainQueue;
class MediaPlayer;
class PlayerTalk;
class UnifiedLog;

/// Has documents played by a program of its own, one for each player, which is started, heard, killed and waited for
/// on a worker.
class PlayerProcesses {
public:
    struct Services {
        MainQueue& mainQueue;
        UnifiedLog& log;
    };
    struct Options {
        std::string program;
        std::chrono::milliseconds timeLimit; ///< for an answer; then the program counts as lost
    };

    PlayerProcesses(const Services&, Options);
    /// Ends all programs. The players that are left tell nothing any more.
    ~PlayerProcesses();
    PlayerProcesses(const PlayerProcesses&) = delete;
    PlayerProcesses& operator=(const PlayerProcesses&) = delete;

    /// Whether there is a program.
    [[nodiscard]] bool canPlay() const { return canPlay_; }
    /// Main thread only. @returns null when there is no program
    [[nodiscard]] std::shared_ptr<MediaPlayer> open(const URL&);

private:
    const Services services_;
    const Options options_;
    const bool canPlay_;
    std::vector<std::weak_ptr<PlayerTalk>> talks_;
    OperationQueue workers_; ///< Ends first.
};

} // namespace tessel
