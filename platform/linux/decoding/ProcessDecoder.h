#pragma once

#include "platform/documents/DocumentDecoder.h"
#include "platform/linux/decoding/DecoderProcess.h"
#include "platform/linux/playing/PlayerProcesses.h"
#include "platform/run/OperationQueue.h"

#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace tessel {

class MainQueue;
class TypeRegistry;
class UnifiedLog;

/// Has documents read by a program of its own, at most two of which run at a time, started by the first wish for what
/// is no text. One that dies, or is too slow, costs the document that it was reading and no other: what a process dies
/// of that has read others before is tried once more by a new one. Running programs are kept for the next wish until
/// nobody has had one for a while.
class ProcessDecoder final : public DocumentDecoder {
public:
    struct Services {
        MainQueue& mainQueue;
        UnifiedLog& log;
        const TypeRegistry& types;
    };
    struct Options {
        std::string program; ///< where it cannot be started, only texts are known
        std::chrono::milliseconds timeLimit = std::chrono::seconds(10); ///< for one wish, once a process works on it
        double idleSeconds = 30;                                        ///< by the platform's clock
        std::string player = {};                                        ///< where it cannot be started, nothing plays
    };

    ProcessDecoder(const Services&, Options);
    /// Ends what is under way. No handler is called any more.
    ~ProcessDecoder() override;

    Ticket inspect(const URL&, FactsHandler) override;
    Ticket paint(const PictureWish&, PictureHandler) override;
    void cancel(Ticket) override;
    [[nodiscard]] std::shared_ptr<MediaPlayer> openPlayer(const URL&) override;

private:
    struct Job;
    struct Idle {
        std::unique_ptr<DecoderProcess> process;
        std::string path; ///< what it has read last
    };

    Ticket add(std::shared_ptr<Job>);
    void workOnNewest();
    [[nodiscard]] std::shared_ptr<Job> startNewest();
    [[nodiscard]] std::shared_ptr<Job> take(Ticket);
    [[nodiscard]] ContentFacts factsOf(Job&);
    void paintNow(Job&);
    [[nodiscard]] DecoderProcess::Outcome decode(Job&, const FileDescriptor& document);
    [[nodiscard]] std::unique_ptr<DecoderProcess> processFor(Job&);
    [[nodiscard]] std::unique_ptr<DecoderProcess> takeIdle(const std::string& path);
    void letGo(Job&, std::unique_ptr<DecoderProcess>, bool isOfUse);
    void endIdleLater();
    [[nodiscard]] bool isWanted(const Job&) const;
    void logEnd(const Job&, const DecoderProcess::Outcome&) const;
    [[nodiscard]] ContentKind playable(ContentKind) const;
    [[nodiscard]] ContentKind kindByName(const URL&) const;

    const Services services_;
    const Options options_;
    mutable std::mutex mutex_;
    Ticket lastTicket_ = 0;
    bool isEnding_ = false;
    bool endsIdleLater_ = false;
    std::map<Ticket, std::shared_ptr<Job>> jobs_; ///< All that are wanted.
    std::vector<Idle> idle_;
    const std::shared_ptr<ProcessDecoder*> self_; ///< Known weakly to tasks of the main queue.
    PlayerProcesses players_;
    OperationQueue workers_; ///< Ends first: its operations use all else.
};

} // namespace tessel
