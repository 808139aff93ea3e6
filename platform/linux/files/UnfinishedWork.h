#pragma once

#include "platform/base/URL.h"
#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/files/ItemStamp.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace tessel {

/// A name for an item that is being made or removed, in the folder of `item`: hidden, and never used twice.
[[nodiscard]] URL hiddenNameBeside(const URL& item);

/// Whether an item has such a name, or lies in one that has.
[[nodiscard]] bool isOutOfSight(const URL& item);

/// What is to be cleared up when a change is never finished.
struct UnfinishedChange {
    /// An item that is in two places for a moment while it moves to another file system.
    struct Copying {
        URL from;
        ItemStamp source;
        URL to;
        ItemStamp copy;
    };

    /// An item under a hidden name. It is removed, unless it has a place and is not what it should be, or nothing says
    /// what that is.
    std::optional<URL> hidden;
    std::optional<URL> place;       ///< where it goes back
    std::optional<ItemStamp> stamp; ///< what it should be
    std::optional<URL> equalTo;     ///< or what it should be equal to

    /// Its source is removed when the very copy is in place and still equal to it.
    std::optional<Copying> copying;
};

/// Remembers, in a folder of the home, the changes that are under way, so that a program that was killed leaves neither
/// hidden items nor two of one for longer than until the next start. Safe from any thread, and between processes.
class UnfinishedWork {
public:
    explicit UnfinishedWork(URL folder) : folder_(std::move(folder)) {}

    /// Remembers a change until it is destroyed.
    class Note {
    public:
        Note() = default;
        Note(Note&& other) noexcept : path_(std::exchange(other.path_, {})), file_(std::move(other.file_)) {}
        Note& operator=(Note other) noexcept
        {
            std::swap(path_, other.path_);
            std::swap(file_, other.file_);
            return *this;
        }
        ~Note();

        /// Leaves the rest to the next start.
        void abandon() { path_.clear(); }

    private:
        friend class UnfinishedWork;

        std::string path_;
        FileDescriptor file_; ///< locked for as long as somebody is at it
    };

    /// Where nothing can be remembered (a full disk, a home that cannot be written) the change goes on all the same.
    [[nodiscard]] Note remember(const UnfinishedChange&) const;

    /// Clears up after programs that are gone. What cannot be cleared up is tried again at the next start.
    void clearUp() const;

    /// The same when there is something, for a change that has been given its turn: the turn may be that of a program
    /// which was killed in the middle of a change of the same items. Costs a call when nothing has begun since.
    void clearUpAfterOthers() const;

private:
    const URL folder_;
    mutable std::atomic<std::int64_t> idleSince_ = -1; ///< when the folder changed last, if it is empty since
};

} // namespace tessel
