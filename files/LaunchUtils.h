#pragma once

#include "platform/apps/ApplicationRecord.h"
#include "platform/apps/ApplicationRegistry.h"
#include "platform/apps/DocumentRecord.h"
#include "platform/base/URL.h"

#include <memory>
#include <optional>
#include <string>

namespace tessel {

class ViewController;

/// Whether only an application that opens documents in place will do.
enum class RequireOpenIn { No, Yes };

/// Chooses the application that opens a document, and hands the document to it. A document that is not on the device is
/// treated like one that is. Main thread only.
class LaunchUtils {
public:
    LaunchUtils() = delete;

    /// @returns whether the document was handed to an application before the call returned; else the caller shows a
    ///          preview
    static bool openInDefaultApp(const URL&, const std::shared_ptr<ViewController>&, RequireOpenIn);

    /// The application that owns the document and opens it in place; null when the quick preview is to show it. Of the
    /// drive's own container that are pictures, films, sounds and PDF files, and what only this program owns. In an app
    /// library the library's applications come first, and the flag changes nothing.
    [[nodiscard]] static std::shared_ptr<const ApplicationRecord> defaultAppForDocument(const URL&, RequireOpenIn);
    /// Its name, in the user's language.
    [[nodiscard]] static std::optional<std::string> defaultAppNameForDocument(const URL&, RequireOpenIn);

    /// The applications that own the document's type and open it in place, in the registry's order.
    [[nodiscard]] static ApplicationRegistry::Applications availableAppsForDoc(const DocumentRecord&);

    /// Whether the URL lies in the drive's own container.
    [[nodiscard]] static bool isUrlInDefaultContainer(const URL&);
};

} // namespace tessel
