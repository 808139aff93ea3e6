#pragma once

#include "platform/files/FileCoordinationService.h"
#include "platform/linux/coordination/AccessTable.h"
#include "platform/linux/coordination/PresenterPost.h"
#include "platform/linux/coordination/Presenters.h"
#include "platform/linux/coordination/ProcessLocks.h"

#include <chrono>
#include <mutex>
#include <span>
#include <string>
#include <vector>

namespace tessel {

class DocumentStore;
class FileManager;
class ProgressService;
class TextServices;

/// What accesses are coordinated with. The services outlive the coordination.
struct CoordinationServices {
    const Clock& clock;
    MainQueue& mainQueue;
    UnifiedLog& log;
    const TextServices& text;
    const FileManager& files;
    const DocumentStore& documents;
    ProgressService& progress;
};

/// Coordinates the accesses of all threads and of all processes that have the same folder for it.
class LinuxFileCoordination final : public FileCoordinationService {
public:
    /// @param folder for locks and sockets, of the user's own; made when it is missing
    /// @param limit how long an access waits at most, by the clock's uptime
    LinuxFileCoordination(const CoordinationServices&, const URL& folder,
                          Clock::Ticks limit = std::chrono::seconds(10));

    [[nodiscard]] std::optional<Error> read(const URL&, const FileCoordinator::Progress&, const FilePresenter* asker,
                                            const Access&) override;
    [[nodiscard]] std::optional<Error> write(std::span<const WriteIntent>, const FilePresenter* asker,
                                             const Access&) override;

    void itemWillMove(const URL& from, const URL& to) override;
    void itemDidMove(const URL& from, const URL& to, const FilePresenter* asker) override;

    void addPresenter(FilePresenter&) override;
    void removePresenter(const FilePresenter&) override;

private:
    using Wishes = std::vector<AccessWish>;
    /// @returns an error for the access not to be made
    using Step = std::function<std::optional<Error>()>;

    [[nodiscard]] std::optional<Error> download(const URL&, const FileCoordinator::Progress&,
                                                const FilePresenter* asker);
    [[nodiscard]] std::optional<Error> inTurn(const Wishes&, ProcessLocks::Marks, const Step&);
    [[nodiscard]] Wishes wishesFor(std::span<const WriteIntent>) const;
    [[nodiscard]] std::string realPath(const URL&) const;
    [[nodiscard]] std::optional<Error> tell(const Notice&, const FilePresenter* asker) const;
    [[nodiscard]] std::optional<Error> tellAll(Notice::Kind, std::span<const WriteIntent>, const Wishes&,
                                               const FilePresenter* asker) const;
    [[nodiscard]] Error ownObstacle(const Wishes&) const;
    [[nodiscard]] Error errorOf(const ProcessLocks::Obstacle&) const;

    const CoordinationServices services_;
    const Clock::Ticks limit_;
    AccessTable table_;
    ProcessLocks locks_;
    mutable Presenters presenters_;
    std::once_flag opened_;
    FileDescriptor listening_; ///< from the first presenter on
    PresenterPost post_;       ///< ends before the presenters that it tells
};

} // namespace tessel
