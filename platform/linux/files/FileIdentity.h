#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tessel {

/// What tells a file from every other, before and after it was renamed or moved within its file system: the number of
/// its inode, and when that was born, because numbers are used again. Devices are left out: their numbers change when
/// the machine starts anew.
struct FileIdentity {
    std::uint64_t inode = 0;
    std::int64_t birth = 0; ///< nanoseconds since 1970; 0 where the file system keeps no such date

    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

/// The identity of a regular file or folder; links are not followed.
/// @returns none with errno set; EINVAL for anything else
[[nodiscard]] std::optional<FileIdentity> fileIdentity(const std::string& path);

/// The same of an open file.
[[nodiscard]] std::optional<FileIdentity> fileIdentity(int descriptor);

} // namespace tessel
