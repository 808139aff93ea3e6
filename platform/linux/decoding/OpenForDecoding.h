#pragma once

#include "platform/base/URL.h"
#include "platform/documents/DocumentDecoder.h"
#include "platform/linux/files/FileDescriptor.h"

#include <optional>

namespace tessel {

/// A document that is open for reading, or why it is not.
struct OpenedFile {
    FileDescriptor file;
    std::optional<ContentProblem> problem;
};

/// Opens a regular file with content; links are followed. Never waits for another program, as opening a pipe would.
[[nodiscard]] OpenedFile openForDecoding(const URL&);

/// Whether the first kilobytes could be those of a text: without zero characters, and not the beginning of a PDF
/// document.
[[nodiscard]] bool beginsLikeText(const FileDescriptor&);

} // namespace tessel
