#pragma once

#include "platform/documents/DocumentDecoder.h"
#include "platform/linux/decoding/DecoderMessages.h"
#include "platform/linux/files/FileDescriptor.h"

#include <optional>

namespace tessel {

/// The picture that came with an answer, without a copy. The answer is not believed: one that does not fit the file, or
/// a file that could still change under its reader, is none.
[[nodiscard]] std::optional<ContentPicture> receivedPicture(const DecoderAnswer&, const FileDescriptor&);

/// The facts of an answer, which are not believed either: each is within what can be.
[[nodiscard]] ContentFacts receivedFacts(const DecoderAnswer&);

/// None when the answer names none that there is.
[[nodiscard]] std::optional<ContentProblem> receivedProblem(const DecoderAnswer&);

} // namespace tessel
