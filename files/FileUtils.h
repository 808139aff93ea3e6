#pragma once

#include "platform/base/URL.h"
#include "platform/base/Value.h"
#include "platform/files/ResourceValues.h"

#include <optional>
#include <string>

namespace tessel {

/// Questions about single files. All run on the calling thread.
class FileUtils {
public:
    FileUtils() = delete;

    /// The promised value or, when there is none, the plain one; a none value when neither can be had. Never downloads.
    [[nodiscard]] static Value getResourceValue(ResourceKey, const std::optional<URL>& forURL);

    /// Whether something is at the URL's path; a document that is not on the device is not.
    [[nodiscard]] static bool exists(const URL&);
    /// The type of documents with the URL's extension; none without an extension, or for an unknown one.
    [[nodiscard]] static std::optional<std::string> fileUTI(const URL&);
    /// Whether it is a picture, a film, a sound or a PDF file, by its extension.
    [[nodiscard]] static bool isAudioVideoImageFile(const URL&);

    /// Logs the dates and the size of a file, or why they cannot be had.
    static void logFileAttributes(const std::string& path);
};

} // namespace tessel
