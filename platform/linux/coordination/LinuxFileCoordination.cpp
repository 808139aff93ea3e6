#include "platform/linux/coordination/LinuxFileCoordination.h"

#include "platform/files/FileManager.h"

namespace tessel {

LinuxFileCoordination::LinuxFileCoordination(const CoordinationServices& services, Clock::Ticks limit)
    : services_(services), limit_(limit), table_(services.clock)
{
}

std::optional<Error> LinuxFileCoordination::read(const URL& url, const FileCoordinator::Progress&, const FilePresenter*,
                                                 const Access& access)
{
    return inTurn({wishFor(url, false)}, access);
}

std::optional<Error> LinuxFileCoordination::write(std::span<const WriteIntent> intents, const FilePresenter*,
                                                  const Access& access)
{
    std::vector<AccessWish> wishes;
    for (const auto& intent : intents)
        wishes.push_back(wishFor(intent.url, true));
    return inTurn(std::move(wishes), access);
}

std::optional<Error> LinuxFileCoordination::inTurn(std::vector<AccessWish> wishes, const Access& access)
{
    const auto name = URL::file(wishes.front().path).lastPathComponent();
    const auto turn = table_.enter(std::move(wishes), services_.clock.uptime() + limit_);
    if (!turn)
        return Error{Domain::General, ErrorCode::kLocked, "“" + std::string(name) + "” is in use.", "In use"};
    access();
    return std::nullopt;
}

AccessWish LinuxFileCoordination::wishFor(const URL& url, bool writes) const
{
    const auto folder = services_.files.resolvingSymbolicLinks(url.deletingLastPathComponent());
    return {folder.appending(url.lastPathComponent()).path(), writes};
}

void LinuxFileCoordination::itemWillMove(const URL&, const URL&)
{
}

void LinuxFileCoordination::itemDidMove(const URL&, const URL&, const FilePresenter*)
{
}

void LinuxFileCoordination::addPresenter(const std::shared_ptr<FilePresenter>&)
{
}

void LinuxFileCoordination::removePresenter(const FilePresenter&)
{
}

} // namespace tessel
