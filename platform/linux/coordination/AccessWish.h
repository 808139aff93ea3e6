#pragma once

#include <string>
#include <string_view>

namespace tessel {

/// One item that an access wants, with all that is in it.
struct AccessWish {
    std::string path; ///< absolute, links on the way to the item resolved
    bool writes = false;
};

/// Whether `path` is `folder` itself or lies below it.
[[nodiscard]] inline bool isAtOrBelow(std::string_view path, std::string_view folder)
{
    return path.starts_with(folder) && (path.size() == folder.size() || folder == "/" || path[folder.size()] == '/');
}

[[nodiscard]] inline bool areInConflict(const AccessWish& left, const AccessWish& right)
{
    return (left.writes || right.writes) && (isAtOrBelow(left.path, right.path) || isAtOrBelow(right.path, left.path));
}

} // namespace tessel
