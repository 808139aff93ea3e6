#pragma once

#include "platform/files/FileCoordinationService.h"
#include "platform/linux/coordination/AccessTable.h"

#include <chrono>
#include <vector>

namespace tessel {

class FileManager;

/// What accesses are coordinated with. The services outlive the coordination.
struct CoordinationServices {
    const Clock& clock;
    const FileManager& files;
};

/// Coordinates accesses of the threads of this process.
class LinuxFileCoordination final : public FileCoordinationService {
public:
    /// @param limit how long an access waits at most
    explicit LinuxFileCoordination(const CoordinationServices&, Clock::Ticks limit = std::chrono::seconds(10));

    [[nodiscard]] std::optional<Error> read(const URL&, const FileCoordinator::Progress&, const FilePresenter* asker,
                                            const Access&) override;
    [[nodiscard]] std::optional<Error> write(std::span<const WriteIntent>, const FilePresenter* asker,
                                             const Access&) override;

    void itemWillMove(const URL& from, const URL& to) override;
    void itemDidMove(const URL& from, const URL& to, const FilePresenter* asker) override;

    void addPresenter(const std::shared_ptr<FilePresenter>&) override;
    void removePresenter(const FilePresenter&) override;

private:
    [[nodiscard]] AccessWish wishFor(const URL&, bool writes) const;
    [[nodiscard]] std::optional<Error> inTurn(std::vector<AccessWish>, const Access&);

    const CoordinationServices services_;
    const Clock::Ticks limit_;
    AccessTable table_;
};

} // namespace tessel
