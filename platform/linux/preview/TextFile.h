#pragma once

#include "platform/documents/TextContent.h"
#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/preview/TextRows.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace tessel {

/// An open text: where its rows are, found by degrees by one thread, and what is in them, read by another. Of its bytes
/// it keeps none. It reads by system calls, for which a file that shrinks just ends earlier; the size is that of the
/// moment when it was opened.
class TextFile {
public:
    /// What has been found so far.
    struct Extent {
        std::size_t rows = 0;
        std::uint64_t lines = 0;
        bool isComplete = false; ///< all that can be shown was found
        bool isWhole = false;    ///< and that is all there is
    };

    TextFile(FileDescriptor, std::uint64_t size, const TextEncoding&);

    /// Finds the rows of the next part, of about a megabyte.
    /// @returns what has been found until then
    Extent findMore();

    /// The rows of a block; fewer, or none, where the file has no more.
    [[nodiscard]] TextContent::Rows readBlock(std::size_t block) const;

private:
    [[nodiscard]] std::string readAt(std::uint64_t offset, std::size_t most) const;
    [[nodiscard]] std::optional<std::uint64_t> startOfBlock(std::size_t block) const;
    /// @returns the bytes of the rows that were found
    std::size_t addRows(std::string_view bytes, bool isEnd);

    const FileDescriptor file_;
    const std::uint64_t size_;
    const TextRows finding_;
    const TextRows reading_;
    Extent extent_;
    std::uint64_t offset_; ///< of the first row that has not been found
    mutable std::mutex mutex_;
    std::vector<std::uint64_t> blocks_; ///< where each begins; guarded by the mutex
};

} // namespace tessel
