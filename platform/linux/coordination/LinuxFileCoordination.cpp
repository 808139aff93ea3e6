#include "platform/linux/coordination/LinuxFileCoordination.h"

#include "platform/cloud/ProgressService.h"
#include "platform/files/FileManager.h"
#include "platform/linux/cloud/DocumentStore.h"
#include "platform/linux/files/LinkText.h"
#include "platform/text/FilledText.h"
#include "platform/text/TextServices.h"

#include <fcntl.h>

#include <utility>

namespace tessel {

namespace {

constexpr std::chrono::seconds kLongestAnswer(2);
// A document may be sent back to the cloud between its download and the access that it was made for.
constexpr int kMaximumDownloads = 3;

// For as long as a presenter writes what it presents.
class OwnAccess {
public:
    explicit OwnAccess(std::shared_ptr<PresentedItem> item) : item_(std::move(item))
    {
        if (item_)
            item_->beginOwnAccess();
    }
    ~OwnAccess()
    {
        if (item_)
            item_->endOwnAccess();
    }
    OwnAccess(const OwnAccess&) = delete;
    OwnAccess& operator=(const OwnAccess&) = delete;

private:
    const std::shared_ptr<PresentedItem> item_;
};

// The path of a folder by its descriptor, which takes three calls however deep it is; none when it cannot be had.
std::optional<std::string> realFolder(const std::string& path)
{
    const FileDescriptor folder(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    return folder.isOpen() ? linkText("/proc/self/fd/" + std::to_string(folder.get())) : std::nullopt;
}

std::string nameOf(const std::string& path, const TextServices& text)
{
    return text.displayName(URL::file(path).lastPathComponent());
}

} // namespace

LinuxFileCoordination::LinuxFileCoordination(const CoordinationServices& services, const URL& folder,
                                             Clock::Ticks limit)
    : services_(services), limit_(limit), table_(services.clock), locks_(folder, services.clock),
      presenters_(services.mainQueue, services.log),
      post_(folder.appending("presenters"), [this](const Notice& notice, const std::shared_ptr<Answers>& answers) {
          presenters_.tell(notice, nullptr, answers);
      })
{
}

std::optional<Error> LinuxFileCoordination::read(const URL& url, const FileCoordinator::Progress& progress,
                                                 const FilePresenter* asker, const Access& access)
{
    const Wishes wishes = {{realPath(url), false}};
    const auto marks = locks_.marks();
    if (marks.isSomebodyListening)
        if (auto error = tell({Notice::Kind::Reading, wishes.front().path, {}}, asker))
            return error;
    bool isRead = false;
    const auto readUnlessInCloud = [&]() -> std::optional<Error> {
        const auto isInCloudOnly = services_.documents.isInCloudOnly(url);
        if (!isInCloudOnly)
            return isInCloudOnly.error();
        isRead = !*isInCloudOnly;
        if (isRead)
            access();
        return std::nullopt;
    };
    auto error = inTurn(wishes, marks, readUnlessInCloud);
    for (int count = 0; !error && !isRead; ++count) {
        if (count == kMaximumDownloads)
            return ownObstacle(wishes);
        error = download(url, progress, asker);
        if (!error)
            error = inTurn(wishes, locks_.marks(), readUnlessInCloud);
    }
    return error;
}

// Without keeping anybody out while it takes its time: only when it is whole the content takes its place.
std::optional<Error> LinuxFileCoordination::download(const URL& url, const FileCoordinator::Progress& progress,
                                                     const FilePresenter* asker)
{
    const auto publication = services_.progress.publishForFileURL(url);
    auto content = services_.documents.fetch(url, [&](std::uint64_t done, std::uint64_t total) {
        auto& published = publication.progress();
        published.update(static_cast<std::int64_t>(done), static_cast<std::int64_t>(total));
        const auto wish = progress ? progress(done, total) : OnProgress::Continue;
        return published.isCancelled() ? OnProgress::Cancel : wish;
    });
    if (!content)
        return content.error();
    const Wishes wishes = {{realPath(url), true}};
    const auto marks = locks_.marks();
    auto error = inTurn(wishes, marks, [&] { return services_.documents.install(content.value(), url); });
    if (!error && marks.isSomebodyListening)
        (void)tell({Notice::Kind::Changed, wishes.front().path, {}}, asker);
    return error;
}

std::optional<Error> LinuxFileCoordination::write(std::span<const WriteIntent> intents, const FilePresenter* asker,
                                                  const Access& access)
{
    const auto wishes = wishesFor(intents);
    const auto marks = locks_.marks();
    if (!marks.isSomebodyListening)
        return inTurn(wishes, marks, [&]() -> std::optional<Error> {
            access();
            return std::nullopt;
        });
    if (auto error = tellAll(Notice::Kind::Writing, intents, wishes, asker))
        return error;
    bool isWritten = false;
    const OwnAccess own(presenters_.itemOf(asker));
    auto error = inTurn(wishes, marks, [&] {
        auto refusal = tellAll(Notice::Kind::Deleting, intents, wishes, asker);
        isWritten = !refusal;
        if (isWritten)
            access();
        return refusal;
    });
    if (isWritten)
        (void)tellAll(Notice::Kind::Changed, intents, wishes, asker);
    return error;
}

std::optional<Error> LinuxFileCoordination::inTurn(const Wishes& wishes, ProcessLocks::Marks marks, const Step& step)
{
    using Precedence = ProcessLocks::Precedence;
    const auto deadline = services_.clock.uptime() + limit_;
    const auto precedence = table_.isHeldByThisThread() ? Precedence::OverEverybody
                            : marks.isSomebodyInLine    ? Precedence::OverNobody
                                                        : Precedence::NobodyInLine;
    const auto turn = table_.enter(wishes, deadline);
    if (!turn)
        return ownObstacle(wishes);
    auto access = locks_.begin();
    if (const auto obstacle = access.acquire(wishes, deadline, precedence))
        return errorOf(*obstacle);
    return step();
}

LinuxFileCoordination::Wishes LinuxFileCoordination::wishesFor(std::span<const WriteIntent> intents) const
{
    Wishes wishes;
    for (const auto& intent : intents)
        wishes.push_back({realPath(intent.url), true});
    return wishes;
}

std::string LinuxFileCoordination::realPath(const URL& url) const
{
    const auto folder = url.deletingLastPathComponent();
    const auto real = realFolder(folder.path());
    const auto place = real ? URL::file(*real) : services_.files.resolvingSymbolicLinks(folder);
    return place.appending(url.lastPathComponent()).path();
}

std::optional<Error> LinuxFileCoordination::tell(const Notice& notice, const FilePresenter* asker) const
{
    const auto deadline = Answers::Time::clock::now() + kLongestAnswer;
    const auto answers = std::make_shared<Answers>();
    presenters_.tell(notice, asker, answers);
    auto refusal = post_.send(notice, deadline);
    return refusal ? refusal : answers->wait(deadline);
}

// Of a notice's kind those that concern an intent: who deletes does not write.
std::optional<Error> LinuxFileCoordination::tellAll(Notice::Kind kind, std::span<const WriteIntent> intents,
                                                    const Wishes& wishes, const FilePresenter* asker) const
{
    for (std::size_t i = 0; i < intents.size(); ++i) {
        const bool deletes = intents[i].options == WritingOptions::ForDeleting;
        if (kind != Notice::Kind::Changed && deletes != (kind == Notice::Kind::Deleting))
            continue;
        if (auto refusal = tell({kind, wishes[i].path, {}}, asker))
            return refusal;
    }
    return std::nullopt;
}

Error LinuxFileCoordination::ownObstacle(const Wishes& wishes) const
{
    const auto& text = services_.text;
    return {Domain::General, ErrorCode::kLocked,
            filledText(text.localized("“%1$@” is in use by this program."), {nameOf(wishes.front().path, text)}),
            text.localized("In use")};
}

Error LinuxFileCoordination::errorOf(const ProcessLocks::Obstacle& obstacle) const
{
    const auto& text = services_.text;
    const auto description =
        obstacle.holder
            ? filledText(text.localized("“%1$@” is in use by %2$@ (process %3$@)."),
                         {nameOf(obstacle.path, text), obstacle.holder->name, std::to_string(obstacle.holder->process)})
            : filledText(text.localized("“%1$@” is in use by another program."), {nameOf(obstacle.path, text)});
    return {Domain::General, ErrorCode::kLocked, description, text.localized("In use")};
}

void LinuxFileCoordination::itemWillMove(const URL& from, const URL& to)
{
    if (locks_.marks().isSomebodyListening)
        (void)tell({Notice::Kind::WillMove, realPath(from), realPath(to)}, nullptr);
}

void LinuxFileCoordination::itemDidMove(const URL& from, const URL& to, const FilePresenter* asker)
{
    if (locks_.marks().isSomebodyListening)
        (void)tell({Notice::Kind::Moved, realPath(from), realPath(to)}, asker);
}

void LinuxFileCoordination::addPresenter(FilePresenter& presenter)
{
    std::call_once(opened_, [this] {
        listening_ = locks_.listen();
        post_.open();
    });
    if (const auto url = presenter.presentedItemURL())
        presenters_.add(presenter, realPath(*url));
}

void LinuxFileCoordination::removePresenter(const FilePresenter& presenter)
{
    presenters_.remove(presenter);
}

} // namespace tessel
