#pragma once

namespace tessel {

/// Posted on the main thread after this process has deleted what a library held.
inline constexpr const char* kLibrariesChangedNotification = "LibrariesChanged";

} // namespace tessel
