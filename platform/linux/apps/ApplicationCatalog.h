#pragma once

#include "platform/linux/apps/DesktopEntry.h"
#include "platform/linux/apps/DesktopFolders.h"
#include "platform/linux/apps/FileStamps.h"
#include "platform/linux/apps/MimeAssociations.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tessel {

/// The desktop entries and lists of associations that lie on this device, read with the first question and kept until
/// one of the files or folders changes. The entries' folders count in their order: an entry of the same identifier in a
/// later one does not count, and one that says "Hidden" hides those.
class ApplicationCatalog {
public:
    ApplicationCatalog(DesktopFolders folders, DesktopEntryOptions options,
                       MimeAssociations::CanonicalType canonicalType);

    /// Reads what has changed since. Pointers and associations answered earlier are void then.
    void refresh();

    /// Null when there is none.
    [[nodiscard]] const DesktopEntry* entry(const std::string& identifier) const;
    /// The entries that claim a type, and whose claims count, in no particular order.
    [[nodiscard]] std::vector<const DesktopEntry*> claimants(const std::string& mimeType) const;
    /// Whether the user, or the system, took the type away from an application.
    [[nodiscard]] bool isRemoved(const DesktopEntry&, const std::string& mimeType) const;
    [[nodiscard]] const MimeAssociations& associations() const { return *associations_; }

private:
    struct Entry {
        std::optional<DesktopEntry> entry; ///< none: the file hides the others of its identifier
        std::size_t dataFolder = 0;
    };

    void read();
    void readFolder(const std::string& path, const std::string& prefix, std::size_t dataFolder);
    void readEntry(const std::string& path, std::string identifier, std::size_t dataFolder);

    const DesktopFolders folders_;
    const DesktopEntryOptions options_;
    const MimeAssociations::CanonicalType canonicalType_;
    FileStamps stamps_;
    std::set<std::string> foldersRead_; ///< by their real paths
    std::map<std::string, Entry, std::less<>> entries_;
    std::map<std::string, std::vector<const Entry*>, std::less<>> byType_;
    std::optional<MimeAssociations> associations_; ///< none before the first reading
};

} // namespace tessel
