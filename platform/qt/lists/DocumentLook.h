#pragma once

#include "platform/documents/ListRow.h"

#include <QString>

namespace tessel::qt {

/// The icon of a row's kind and type: "image://icon/" and its freedesktop names, the best first, separated by bars;
/// then
/// "?" and the kind (see IconProvider). Cheap but for the first document of each type. Main thread only.
[[nodiscard]] QString iconSource(const ListRow&);

/// Where a small picture of the document's content comes from: "image://thumbnail/", its path percent-encoded, and
/// "?" and when it was changed, in nanoseconds; empty when there can be none, or its content is not on the device.
[[nodiscard]] QString thumbnailSource(const ListRow&);

} // namespace tessel::qt
