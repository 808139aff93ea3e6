#pragma once

#include "platform/base/URL.h"

#include <optional>
#include <vector>

namespace tessel {

// What file URLs are asked in a cloud drive. All are synchronous, block for their access to the file system, report no
// errors, and may be called from any thread.

/// The document that an external document reference stands for; none when it cannot be found. Any other URL unchanged.
[[nodiscard]] std::optional<URL> tsd_URLByResolvingBookmark(const URL&);

/// The URL of the item that a promise, such as the placeholder of a document that is not on the device, stands for. Any
/// other URL unchanged.
[[nodiscard]] URL tsd_URLByResolvingPromise(const URL&);

/// The document that an external document reference stands for; a reference that leads nowhere unchanged, as is any
/// other URL.
[[nodiscard]] URL tsd_URLByResolvingAlias(const URL&);

/// Whether the URL is the Desktop or the Documents folder of the default container: special folders that stay where
/// they are. What is in them is not special.
[[nodiscard]] bool tsd_isDesktopOrDocumentsFolder(const URL&);

/// Whether the items may be moved into some other container without being downloaded first. The first one stands for
/// all; none can be moved nowhere.
[[nodiscard]] bool tsd_canCrossZoneMoveURLs(const std::vector<URL>&);

/// Whether the quick preview plays the item's sound or video in the platform's default media player: always.
[[nodiscard]] constexpr bool wantsDefaultMediaPlayer(const URL&)
{
    return true;
}

} // namespace tessel
