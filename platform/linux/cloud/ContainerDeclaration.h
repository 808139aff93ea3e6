#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"
#include "platform/base/Value.h"
#include "platform/cloud/CloudContainer.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// The drive's own container.
inline constexpr const char* kDefaultContainerIdentifier = "orvane.Quillbox";

/// The default container of a synced root; its documents folder is the container's folder itself.
[[nodiscard]] CloudContainer defaultContainerIn(const URL& syncedRoot);

/// Where a library lies: the synced root holds a folder "orvane~Lookbook" for the container "orvane.Lookbook"; the
/// documents are in its folder "Documents", and what the container says of itself is in ".container.json" beside that,
/// so that it travels with the documents.
[[nodiscard]] std::string containerFolderName(std::string_view identifier);

/// Writes the declaration into the container's folder, which is there.
[[nodiscard]] std::optional<Error> writeContainerDeclaration(const CloudContainer&, const URL& containerFolder);

/// The libraries that lie in the synced root, in the order of their identifiers; one without a readable declaration is
/// named by its identifier. Empty when the root is missing.
[[nodiscard]] std::vector<std::shared_ptr<const CloudContainer>> librariesInFolder(const URL& syncedRoot);

/// A list of texts as a value, and back; what is no text is left out.
[[nodiscard]] Value listValue(const std::vector<std::string>&);
[[nodiscard]] std::vector<std::string> textList(const Value&);

} // namespace tessel
