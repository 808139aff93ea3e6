#pragma once

#include "platform/base/Date.h"
#include "platform/base/Error.h"
#include "platform/base/URL.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tessel {

/// A document that is not on the device is represented by a placeholder: a hidden file in its folder that holds the
/// document's record, so that a program which moves the folder takes it along. Its name does not grow with the
/// document's. Where both a document and its placeholder exist, the document counts.
struct PlaceholderRecord {
    std::string name;       ///< the document's file name, bytes as the kernel has them
    std::uint64_t size = 0; ///< bytes
    std::optional<Date> creationDate;
    Date modificationDate;
    std::string type;                      ///< type identifier
    std::string identifier;                ///< of the document in the cloud
    std::optional<std::string> sharedRole; ///< one of SharedItemRole; none when it is not shared

    friend bool operator==(const PlaceholderRecord&, const PlaceholderRecord&) = default;
};

/// Where the placeholder of a document lies.
/// @param logical the URL that the document has, or will have, on the device
[[nodiscard]] URL placeholderURL(const URL& logical);

/// Whether a file of this name is a placeholder.
[[nodiscard]] bool isPlaceholderName(std::string_view name);

/// A corrupt-file error (259) when the file is no record, or one of a document that does not belong here.
Result<PlaceholderRecord> readPlaceholder(const URL& placeholder);

/// What the placeholder of a document holds.
/// @param nextName a second name that it fits: renaming the placeholder to fit that name (placeholderURL) then renames
///        the document, in one step
[[nodiscard]] std::string placeholderContent(const PlaceholderRecord&, std::optional<std::string_view> nextName = {});

/// Makes or replaces the placeholder of a document, whole or not at all.
/// @param record its name is that of `logical`
[[nodiscard]] std::optional<Error> writePlaceholder(const URL& logical, const PlaceholderRecord& record);

} // namespace tessel
