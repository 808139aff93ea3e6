#pragma once

#include "platform/files/FileCoordinator.h"

#include <span>

namespace tessel {

struct WriteIntent {
    URL url;
    WritingOptions options;
};

/// What stands behind every FileCoordinator, whose operations these are. Safe from any thread.
/// @param asker a presenter that is not told; may be null
class FileCoordinationService {
public:
    using Access = std::function<void()>;

    virtual ~FileCoordinationService() = default;

    /// Of an item's content. @param progress may be empty
    [[nodiscard]] virtual std::optional<Error> read(const URL&, const FileCoordinator::Progress& progress,
                                                    const FilePresenter* asker, const Access&) = 0;
    [[nodiscard]] virtual std::optional<Error> write(std::span<const WriteIntent>, const FilePresenter* asker,
                                                     const Access&) = 0;

    virtual void itemWillMove(const URL& from, const URL& to) = 0;
    virtual void itemDidMove(const URL& from, const URL& to, const FilePresenter* asker) = 0;

    virtual void addPresenter(FilePresenter&) = 0;
    virtual void removePresenter(const FilePresenter&) = 0;
};

} // namespace tessel
