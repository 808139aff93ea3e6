#pragma once

#include "platform/base/Error.h"
#include "platform/linux/cloud/Placeholder.h"

#include <optional>
#include <string_view>

namespace tessel {

class UnfinishedWork;

/// Changes of placeholders in the drive, which leave nothing behind when the program is killed. Errors name the
/// document.

/// Makes a document's placeholder, unless it has one (516).
/// @param attributesOf an open file whose attributes it takes over
[[nodiscard]] std::optional<Error> makePlaceholder(const URL& document, const PlaceholderRecord&, int attributesOf,
                                                   const UnfinishedWork&);

/// Makes the record of a document fit its next name too, beside its present one, so that its placeholder can be
/// renamed. Attributes are kept.
[[nodiscard]] std::optional<Error> addNameToPlaceholder(const URL& document, std::string_view nextName,
                                                        const UnfinishedWork&);

} // namespace tessel
