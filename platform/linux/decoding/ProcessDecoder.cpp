#include "platform/linux/decoding/ProcessDecoder.h"

#include "platform/files/TypeRegistry.h"
#include "platform/linux/decoding/OpenForDecoding.h"
#include "platform/linux/decoding/ReceivedPicture.h"
#include "platform/log/UnifiedLog.h"
#include "platform/run/MainQueue.h"

#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <utility>

namespace tessel {

namespace {

constexpr std::size_t kMostPrograms = 2;
constexpr int kLongestSide = 1'000'000;
/// What nobody waits for any more may still be done in this time: starting anew takes about as long.
constexpr auto kGrace = std::chrono::milliseconds(100);

using Outcome = DecoderProcess::Outcome;

DecoderRequest requestFor(const URL& url)
{
    DecoderRequest request;
    const auto name = url.lastPathComponent();
    const auto end = name.substr(name.size() - std::min(name.size(), request.name.size() - 1));
    std::copy(end.begin(), end.end(), request.name.begin());
    return request;
}

DecoderRequest requestFor(const DocumentDecoder::PictureWish& wish)
{
    auto request = requestFor(wish.url);
    request.work = DecoderRequest::Work::Paint;
    request.index = std::max(wish.index, 0);
    request.width = std::clamp(wish.width, 1, kLongestSide);
    request.height = std::clamp(wish.height, 1, kLongestSide);
    request.part = wish.part.value_or(request.part);
    return request;
}

ContentProblem problemOf(const Outcome& outcome)
{
    const bool isOutOfTime = WIFSIGNALED(outcome.status) && WTERMSIG(outcome.status) == SIGXCPU;
    const bool isOutOfMemory = WIFEXITED(outcome.status) && WEXITSTATUS(outcome.status) == kDecoderIsOutOfMemory;
    switch (outcome.kind) {
    case Outcome::Kind::NotStarted:
        return ContentProblem::NotReadable;
    case Outcome::Kind::TooSlow:
        return ContentProblem::TooSlow;
    case Outcome::Kind::Died:
    case Outcome::Kind::Answered:
        break;
    }
    return isOutOfTime ? ContentProblem::TooSlow : isOutOfMemory ? ContentProblem::TooLarge : ContentProblem::Damaged;
}

bool isMedia(ContentKind kind)
{
    return kind == ContentKind::Audio || kind == ContentKind::Video;
}

} // namespace

struct ProcessDecoder::Job {
    Job(URL ofJob, const DecoderRequest& toSend, FactsHandler facts, PictureHandler picture)
        : url(std::move(ofJob)), request(toSend), tellFacts(std::move(facts)), tellPicture(std::move(picture))
    {
    }

    const URL url;
    const DecoderRequest request;
    const FactsHandler tellFacts; ///< One of the two is empty.
    const PictureHandler tellPicture;
    Ticket ticket = 0;
    bool isStarted = false;
    DecoderProcess* process = nullptr; ///< that works on it
};

ProcessDecoder::ProcessDecoder(const Services& services, Options options)
    : services_(services), options_(std::move(options)), self_(std::make_shared<ProcessDecoder*>(this)),
      players_({services.mainQueue, services.log}, {options_.player, options_.timeLimit}),
      workers_("documents", QualityOfService::UserInitiated, kMostPrograms)
{
}

ProcessDecoder::~ProcessDecoder()
{
    decltype(jobs_) dropped; // handlers go without the lock
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
    for (const auto& [ticket, job] : jobs_)
        if (job->process)
            job->process->endBy(std::chrono::steady_clock::now());
    dropped.swap(jobs_);
}

DocumentDecoder::Ticket ProcessDecoder::inspect(const URL& url, FactsHandler handler)
{
    return add(std::make_shared<Job>(url, requestFor(url), std::move(handler), PictureHandler()));
}

DocumentDecoder::Ticket ProcessDecoder::paint(const PictureWish& wish, PictureHandler handler)
{
    return add(std::make_shared<Job>(wish.url, requestFor(wish), FactsHandler(), std::move(handler)));
}

DocumentDecoder::Ticket ProcessDecoder::add(std::shared_ptr<Job> job)
{
    const std::lock_guard lock(mutex_);
    job->ticket = ++lastTicket_;
    jobs_.emplace(job->ticket, std::move(job));
    workers_.addOperation([this] { workOnNewest(); });
    return lastTicket_;
}

void ProcessDecoder::cancel(Ticket ticket)
{
    const auto job = take(ticket);
    const std::lock_guard lock(mutex_);
    if (job && job->process)
        job->process->endBy(std::chrono::steady_clock::now() + kGrace);
}

std::shared_ptr<MediaPlayer> ProcessDecoder::openPlayer(const URL& url)
{
    return players_.open(url);
}

std::shared_ptr<ProcessDecoder::Job> ProcessDecoder::take(Ticket ticket)
{
    const std::lock_guard lock(mutex_);
    auto node = jobs_.extract(ticket);
    return node ? std::move(node.mapped()) : nullptr;
}

bool ProcessDecoder::isWanted(const Job& job) const
{
    const std::lock_guard lock(mutex_);
    return jobs_.contains(job.ticket);
}

std::shared_ptr<ProcessDecoder::Job> ProcessDecoder::startNewest()
{
    const std::lock_guard lock(mutex_);
    const auto newest =
        std::find_if(jobs_.rbegin(), jobs_.rend(), [](const auto& entry) { return !entry.second->isStarted; });
    if (newest == jobs_.rend()) // each job has an operation, also one that was cancelled
        return nullptr;
    newest->second->isStarted = true;
    return newest->second;
}

void ProcessDecoder::workOnNewest()
{
    const auto job = startNewest();
    if (!job)
        return;
    if (job->tellPicture)
        return paintNow(*job);
    services_.mainQueue.async([self = std::weak_ptr(self_), ticket = job->ticket, facts = factsOf(*job)] {
        const auto decoder = self.lock();
        if (const auto wanted = decoder ? (*decoder)->take(ticket) : nullptr)
            wanted->tellFacts(facts);
    });
}

ContentFacts ProcessDecoder::factsOf(Job& job)
{
    const auto document = openForDecoding(job.url);
    const auto kind = kindByName(job.url);
    if (document.problem)
        return {.kind = kind, .problem = document.problem, .size = {}};
    if ((kind == ContentKind::Text && beginsLikeText(document.file)) || isMedia(kind))
        return {.kind = playable(kind), .problem = {}, .size = {}};
    const auto outcome = decode(job, document.file);
    if (outcome.kind == Outcome::Kind::Answered) {
        auto facts = receivedFacts(outcome.answer);
        facts.kind = playable(facts.kind);
        return facts;
    }
    if (outcome.kind == Outcome::Kind::NotStarted)
        return {};
    return {.kind = kind, .problem = problemOf(outcome), .size = {}};
}

void ProcessDecoder::paintNow(Job& job)
{
    std::optional<ContentPicture> picture;
    const auto document = openForDecoding(job.url);
    auto problem = document.problem;
    if (!problem) {
        const auto outcome = decode(job, document.file);
        problem = outcome.kind == Outcome::Kind::Answered ? receivedProblem(outcome.answer) : problemOf(outcome);
        if (!problem)
            picture = receivedPicture(outcome.answer, outcome.picture);
    }
    if (!picture && !problem)
        problem = ContentProblem::Damaged;
    if (const auto wanted = take(job.ticket))
        wanted->tellPicture(picture, problem);
}

Outcome ProcessDecoder::decode(Job& job, const FileDescriptor& document)
{
    while (auto process = processFor(job)) {
        const bool wasFresh = process->isFresh();
        auto outcome = process->exchange(job.request, document, options_.timeLimit);
        logEnd(job, outcome);
        letGo(job, std::move(process), outcome.kind == Outcome::Kind::Answered);
        if (outcome.kind != Outcome::Kind::Died || wasFresh)
            return outcome;
    }
    Outcome outcome;
    outcome.kind = Outcome::Kind::NotStarted;
    return outcome;
}

/// @returns null when nobody wants the job any more, and when none can be started
std::unique_ptr<DecoderProcess> ProcessDecoder::processFor(Job& job)
{
    auto process = takeIdle(job.url.path());
    if (!process)
        process = DecoderProcess::start(options_.program);
    const std::lock_guard lock(mutex_);
    if (!process || isEnding_)
        return nullptr;
    if (!jobs_.contains(job.ticket)) {
        idle_.push_back({std::move(process), {}});
        endIdleLater();
        return nullptr;
    }
    process->endBy(DecoderProcess::Time::max());
    job.process = process.get();
    return process;
}

/// @returns the one that has this document open, if any has
std::unique_ptr<DecoderProcess> ProcessDecoder::takeIdle(const std::string& path)
{
    const std::lock_guard lock(mutex_);
    if (idle_.empty())
        return nullptr;
    auto chosen = std::ranges::find(idle_, path, &Idle::path);
    if (chosen == idle_.end())
        --chosen;
    auto process = std::move(chosen->process);
    idle_.erase(chosen);
    return process;
}

void ProcessDecoder::letGo(Job& job, std::unique_ptr<DecoderProcess> process, bool isOfUse)
{
    const std::lock_guard lock(mutex_);
    job.process = nullptr;
    if (!isOfUse || isEnding_)
        return;
    idle_.push_back({std::move(process), job.url.path()});
    endIdleLater();
}

/// The lock is held.
void ProcessDecoder::endIdleLater()
{
    if (std::exchange(endsIdleLater_, true))
        return;
    services_.mainQueue.after(options_.idleSeconds, [self = std::weak_ptr(self_), last = lastTicket_] {
        const auto alive = self.lock();
        if (!alive)
            return;
        auto& decoder = **alive;
        std::vector<Idle> ended; // goes without the lock
        const std::lock_guard lock(decoder.mutex_);
        decoder.endsIdleLater_ = false;
        if (decoder.lastTicket_ == last && decoder.jobs_.empty())
            ended.swap(decoder.idle_);
        else
            decoder.endIdleLater();
    });
}

void ProcessDecoder::logEnd(const Job& job, const Outcome& outcome) const
{
    if (outcome.kind == Outcome::Kind::Answered || !isWanted(job))
        return;
    if (outcome.kind == Outcome::Kind::NotStarted)
        services_.log.write(LogLevel::Error, "The program that reads documents does not start: %@", options_.program);
    else if (outcome.kind == Outcome::Kind::TooSlow)
        services_.log.write(LogLevel::Warning, "The program that reads documents takes too long for %@", job.url);
    else
        services_.log.write(LogLevel::Warning, "The program that reads documents ended with status %d reading %@",
                            outcome.status, job.url);
}

/// Where nothing plays, sound and films are none of the kinds.
ContentKind ProcessDecoder::playable(ContentKind kind) const
{
    return isMedia(kind) && !players_.canPlay() ? ContentKind::None : kind;
}

ContentKind ProcessDecoder::kindByName(const URL& url) const
{
    const auto type = services_.types.identifierForFileName(url.lastPathComponent());
    const auto isA = [&](std::string_view ancestor) { return services_.types.conforms(type, ancestor); };
    return isA("public.image")    ? ContentKind::Image
           : isA("com.adobe.pdf") ? ContentKind::Pages
           : isA("public.text")   ? ContentKind::Text
           : isA("public.movie")  ? ContentKind::Video
           : isA("public.audio")  ? ContentKind::Audio
                                  : ContentKind::None;
}

} // namespace tessel
