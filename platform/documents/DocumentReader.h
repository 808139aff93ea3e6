#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tessel {

class TextContent;

/// What is known of a document without its content.
struct DocumentDescription {
    std::string typeIdentifier;
    std::string typeDescription;       ///< in the user's language
    std::optional<std::uint64_t> size; ///< bytes
    bool isFolder = false;             ///< or a package
    bool isOnDevice = true;
};

/// The content of a document, ready to be shown.
struct OpenedDocument {
    std::shared_ptr<TextContent> text; ///< null for what is no text
    bool isEmpty = false;              ///< there is not a byte in it
    std::optional<Error> failure;      ///< why it cannot be opened; the user-cancelled error (3072) when somebody has
                                       ///< ended its download
};

/// Opens documents that are to be shown. Nothing is read, waited for or downloaded on the main thread.
class DocumentReader {
public:
    /// Called on the main queue, in this order: once, as often as it gets further, once. Folders are only described.
    struct Handlers {
        std::function<void(const DocumentDescription&)> described;
        std::function<void(double fraction)> downloaded; ///< 0 to 1
        std::function<void(const OpenedDocument&)> opened;
    };
    /// Stands for one opening. No handler is called any more when it is gone, and a download ends.
    class Opening {
    public:
        virtual ~Opening() = default;
    };

    virtual ~DocumentReader() = default;

    /// Reads in agreement with other programs, and downloads a document that is not on the device. One that is gone, or
    /// cannot be described, is opened with a failure alone. Main thread only.
    [[nodiscard]] virtual std::shared_ptr<Opening> open(const URL&, Handlers) = 0;
};

} // namespace tessel
