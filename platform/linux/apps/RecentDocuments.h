#pragma once

#include "platform/base/NotificationCenter.h"
#include "platform/base/URL.h"
#include "platform/linux/apps/DesktopFolders.h"
#include "platform/linux/apps/ShortcutEntry.h"
#include "platform/run/OperationQueue.h"

#include <optional>
#include <string>
#include <vector>

namespace tessel {

class CloudService;
class DocumentIdentifiers;
class TextServices;
class TypeRegistry;
class UnifiedLog;
struct ContinuationActivity;

/// What the list of recent documents works with; the services outlive it.
struct RecentDocumentsServices {
    NotificationCenter& notifications;
    UnifiedLog& log;
    const TextServices& text;
    const TypeRegistry& types;
    const CloudService& cloud;
    DocumentIdentifiers& identifiers;
};

/// The documents that were opened last, as actions of the program's icon: in the user's own copy of the installed
/// desktop entry, which is all that is kept of them. It follows the installed one, and where the documents go, when the
/// program starts, becomes active or resigns, and with each document that is opened; it is removed with the last
/// document, and when somebody else signs in, or nobody is signed in. Nothing is done where no entry is installed, nor
/// where the user has an entry that this program did not write.
///
/// Used on the main thread; files are read and written on a thread of its own.
class RecentDocuments {
public:
    /// @param folders the user's own folder of data comes first
    RecentDocuments(const DesktopFolders& folders, const RecentDocumentsServices&);
    /// Waits a moment for what was begun.
    ~RecentDocuments();
    RecentDocuments(const RecentDocuments&) = delete;
    RecentDocuments& operator=(const RecentDocuments&) = delete;

    /// A document has been opened; nothing for a folder, and for what is not in the drive.
    void add(const URL& document);
    /// The same for the document that somebody looks at.
    void add(const ContinuationActivity&);

private:
    void update(const std::optional<URL>& added);
    void forget() const;
    [[nodiscard]] std::optional<std::string> installedEntry() const;
    [[nodiscard]] bool mayWrite() const;
    [[nodiscard]] std::string currentEntry() const;
    [[nodiscard]] std::vector<RecentDocument> documents(const std::optional<URL>& added, std::string_view entry) const;
    [[nodiscard]] std::optional<RecentDocument> find(std::uint32_t identifier) const;
    [[nodiscard]] bool isDocument(const URL&) const;
    void write(const std::string& entry) const;

    const RecentDocumentsServices services_;
    const URL entry_;                  ///< the user's
    const std::vector<URL> installed_; ///< where the entry may be installed, the most important first
    std::vector<NotificationCenter::Observation> observations_;
    OperationQueue queue_{"orvane.TesselDriveApp.recents", QualityOfService::Utility}; ///< first to end
};

} // namespace tessel
