#pragma once

#include <string>

namespace tessel {

/// Whether the quick preview can show more than an icon of documents of a type: text, images, PDF documents, sound and
/// video. So it may of those whose names say nothing, and it shows a package as what it is.
[[nodiscard]] bool isPreviewable(const std::string& typeIdentifier);

} // namespace tessel
