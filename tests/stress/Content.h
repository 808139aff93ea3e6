#pragma once

#include "platform/base/URL.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tessel {

/// Bytes that no other document has, which name themselves and tell whether they are whole.
[[nodiscard]] std::string makeContent(const std::string& identifier, std::size_t length);

/// The identifier of whole content; none for what is torn.
[[nodiscard]] std::optional<std::string> contentIdentifier(std::string_view bytes);

/// What a file was found to hold.
struct Reading {
    bool isThere = false;                  ///< else nothing of the following is known
    std::optional<std::string> identifier; ///< none when it is torn
};

/// Opens the file as any program does: links are not followed.
[[nodiscard]] Reading readContent(const URL& file);

/// What a document holds, on the device or in the store of a home.
/// @param store the folder of the contents
[[nodiscard]] Reading readDocument(const URL& document, const URL& store);

} // namespace tessel
