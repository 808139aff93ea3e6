#pragma once

#include "platform/base/URL.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tessel {

// Document identifiers: from a file URL and back. Synchronous, from any thread.

/// The document with an identifier, wherever in the drive it is now, on the device or not.
/// @param documentID a decimal number; what follows its digits is ignored
/// @returns none, and an ERROR line, when there is no such document, or another one lies in its place
[[nodiscard]] std::optional<URL> tsd_URLFromDocumentID(const std::optional<std::string>& documentID);

/// The document's own identifier, given by the first question; 0 when it has none and can be given none.
[[nodiscard]] std::int64_t tsd_DocumentID(const URL&);

} // namespace tessel
