#pragma once

#include "platform/base/URL.h"

#include <optional>
#include <string>

namespace tessel {

/// This program, as the registry of applications knows it.
inline constexpr const char* kOwnBundleIdentifier = "orvane.TesselDrive";

/// One application, as it was when the registry was asked. Texts for the user are in the user's language, UTF-8.
struct ApplicationRecord {
    std::string bundleIdentifier; ///< the same for as long as the application exists: "orvane.Quillpad"
    std::string itemName;         ///< the name in no language
    std::string localizedName;
    std::string localizedShortName;
    std::optional<std::string> shortVersionString; ///< none where the application does not tell
    std::optional<std::string> vendorName;         ///< none where the application does not tell
    std::string bundleExecutable;                  ///< the program's file name
    std::optional<URL> bundleContainerURL;         ///< the folder that holds the application's entry
    std::string itemIdentifier;                    ///< the name of the entry
    bool isInstalled = false;                      ///< the program is there and may be run
    bool supportsOpenInPlace = false;              ///< it can be given a document, and opens the document itself

    [[nodiscard]] std::string description() const { return itemName + " (" + bundleIdentifier + ")"; }

    /// The same application, whatever changed in it.
    friend bool operator==(const ApplicationRecord& left, const ApplicationRecord& right)
    {
        return left.bundleIdentifier == right.bundleIdentifier;
    }
};

} // namespace tessel
