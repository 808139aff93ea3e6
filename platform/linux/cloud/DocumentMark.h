#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"
#include "platform/linux/files/FileIdentity.h"

#include <cstdint>
#include <optional>

namespace tessel {

/// What a document's file says of its identifier, in an attribute: it outlives the catalogue and goes along to other
/// file systems. A copy has it, too, but there it names another file.
struct DocumentMark {
    std::uint32_t identifier = 0; ///< never 0
    FileIdentity file;            ///< that it was written on; another one's, or empty, on a copy

    friend bool operator==(const DocumentMark&, const DocumentMark&) = default;
};

/// "user.tesseldrive.documentid": the identifier, and behind it the inode and birth of its file, in decimal digits.
inline constexpr const char* kDocumentAttribute = "user.tesseldrive.documentid";

/// None without a mark, or with a damaged one; an error when it cannot be read now, for then there may be one.
Result<std::optional<DocumentMark>> readDocumentMark(const URL& file);

/// Gives a file that takes the place of another all attributes of that: the mark names the new file if it named the old
/// one, so that it is the document and no copy.
/// @returns false with errno set, but not where a file system keeps no attributes
[[nodiscard]] bool continueDocument(int oldFile, int newFile);

/// The mark alone, for what was written since to an old file that is out of everybody's reach now.
void continueMark(const URL& oldFile, const URL& newFile);

/// Writes the mark unless it is there. Not every file system keeps any, and not every file can be marked.
/// @returns whether it was there
bool markDocument(const URL& file, const DocumentMark&);

} // namespace tessel
