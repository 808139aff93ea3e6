#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace tessel {

class FilePresenter;

enum class ReadingOptions {
    /// The item's content. A document that is not on the device is downloaded first.
    None,
    /// Only what is known at once is read: nothing is downloaded, and no writer is waited for.
    ImmediatelyAvailableMetadataOnly,
};

enum class WritingOptions {
    None,         ///< its content or attributes change, or it is made
    ForDeleting,  ///< it is removed
    ForMoving,    ///< it goes to another place or name
    ForReplacing, ///< another item takes its place
};

/// Whether a download goes on.
enum class OnProgress { Continue, Cancel };

/// Access to items in agreement with the sync service and other programs. Synchronous: the accessor has run, on the
/// calling thread, when a call returns without an error.
///
/// Nobody reads or writes an item, or anything in it, while somebody writes it. Who asked first comes first. An access
/// that has waited for ten seconds ends in an error 255 that says who has the item; one that the same thread itself
/// stands in the way of, at once. A process that ends, however, gives back what it had.
class FileCoordinator {
public:
    using Accessor = std::function<void(const URL&)>;
    using PairAccessor = std::function<void(const URL& first, const URL& second)>;
    /// Told, on the calling thread, how many bytes of how many have come.
    using Progress = std::function<OnProgress(std::uint64_t done, std::uint64_t total)>;

    /// @param presenter is not told of the accesses, for it begins them itself
    explicit FileCoordinator(const FilePresenter* presenter = nullptr) : presenter_(presenter) {}

    /// @returns the coordinator's own error, in which case the accessor has not run: the item is held for too long, a
    ///          presenter refuses, the content cannot be had, or the download was cancelled (3072)
    [[nodiscard]] std::optional<Error> coordinateReading(const URL&, ReadingOptions, const Accessor&,
                                                         const Progress& = nullptr);
    [[nodiscard]] std::optional<Error> coordinateWriting(const URL&, WritingOptions, const Accessor&);
    /// Both at the same time, or neither.
    [[nodiscard]] std::optional<Error> coordinateWriting(const URL& first, WritingOptions firstOptions,
                                                         const URL& second, WritingOptions secondOptions,
                                                         const PairAccessor&);

    /// Called by an accessor before it moves an item, and after it has.
    void itemWillMove(const URL& from, const URL& to);
    void itemDidMove(const URL& from, const URL& to);

    /// A presenter is told from now on until it is removed, which happens in its destructor at the latest. Removing it
    /// waits until it has been told what it is just being told, unless that is what removes it. Adding twice, and
    /// removing one that was not added, does nothing. Safe from any thread.
    static void addFilePresenter(FilePresenter&);
    static void removeFilePresenter(const FilePresenter&);

private:
    const FilePresenter* presenter_;
};

} // namespace tessel
