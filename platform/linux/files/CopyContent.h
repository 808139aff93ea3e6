#pragma once

#include <cstdint>
#include <functional>

namespace tessel {

/// Copies a file's bytes, and its attributes of the user's own kind. Both descriptors are open, `to` for an empty file.
/// An attribute that the file system of `to` does not keep at all is left out.
/// @returns false with errno set after a failure
[[nodiscard]] bool copyContent(int from, int to);
[[nodiscard]] bool copyAttributes(int from, int to);

/// The same in parts.
/// @param wantsMore called after each with the bytes that have been copied so far; the copying ends (ECANCELED) when it
///        answers no
[[nodiscard]] bool copyContent(int from, int to, const std::function<bool(std::uint64_t)>& wantsMore);

/// Permissions, and the times of the last access and modification.
[[nodiscard]] bool copyModeAndTimes(int from, int to);

} // namespace tessel
