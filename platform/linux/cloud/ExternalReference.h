#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tessel {

/// An external document reference is a small file in the drive, "….tesselref", that stands for a document elsewhere in
/// it:
///
///     {"documentIdentifier": 2747210083, "path": "orvane~Quillbox/Documents/Plan.txt"}
///
/// One of the two is enough. The identifier leads to the document wherever it was moved; the path, below the folder
/// that holds all containers, to what lies there now.
struct ExternalReference {
    std::optional<std::uint32_t> documentIdentifier; ///< never 0
    std::optional<std::string> path;                 ///< UTF-8; not yet checked to be one that leads into the drive

    friend bool operator==(const ExternalReference&, const ExternalReference&) = default;
};

/// Whether a file of this name is a reference.
[[nodiscard]] bool isExternalReferenceName(const URL&);

/// A corrupt-file error (259) when the file, of at most 64 KiB, is no reference.
Result<ExternalReference> readExternalReference(const URL&);

/// The content of the file of a reference; its path is UTF-8.
[[nodiscard]] std::string externalReferenceContent(const ExternalReference&);

/// The corrupt-file error (259) of a reference that stands for nothing.
[[nodiscard]] Error damagedReferenceError(const URL&);

} // namespace tessel
