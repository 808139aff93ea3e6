#pragma once

#include "platform/apps/ApplicationRegistry.h"
#include "platform/linux/apps/ApplicationCatalog.h"
#include "platform/linux/apps/ChildWatcher.h"
#include "platform/run/OperationQueue.h"

#include <atomic>
#include <functional>

namespace tessel {

class Clock;
class FileCoordinationService;
class MainQueue;
class SharedMimeTypes;
class TextServices;
class UnifiedLog;

/// What the registry of applications works with; the services outlive it.
struct DesktopServices {
    MainQueue& mainQueue;
    UnifiedLog& log;
    const Clock& clock;
    const TextServices& text;
    const SharedMimeTypes& types;
    FileCoordinationService& coordination;
};

/// The desktop's applications: its desktop entries, and the lists in which the user, the system and the desktop say
/// which of them open what. An application's identifier is that of its entry; it opens documents in place when its
/// command takes a file or a URL.
///
/// The owners of a document are, in this order, the defaults for its own type, the applications added to the type, and
/// those that claim the type, by name. A plain text whose own type nobody owns belongs to the owners of plain text; of
/// a type that says nothing (application/octet-stream) only the defaults are owners.
class DesktopApplications final : public ApplicationRegistry {
public:
    DesktopApplications(DesktopFolders, std::string locale, const DesktopServices&);

    /// Drops the downloads that are under way.
    ~DesktopApplications() override { isStopping_ = true; }

    /// Told on the main thread of each document that an application was started with.
    std::function<void(const URL&)> documentOpened;

    [[nodiscard]] std::shared_ptr<const ApplicationRecord> application(
        std::string_view bundleIdentifier) const override;
    [[nodiscard]] RankedApplications applicationsForDocument(const URL&) const override;

    /// The working folder is the one that the entry names, else the document's. An application that ends badly in its
    /// first seconds is logged; one for the terminal is refused where there is none. A document that is not on the
    /// device is downloaded first, on a worker: then the call returns at once, and a failure is logged.
    [[nodiscard]] std::optional<Error> openDocument(const URL&, const ApplicationRecord&) override;
    /// The user's choice for the link's scheme, else an application that claims it.
    [[nodiscard]] std::optional<Error> openLink(const std::string& link) override;
    /// Whether an application takes links of a scheme.
    [[nodiscard]] bool opensLinksOf(const std::string& scheme) const;
    [[nodiscard]] bool isAwaitingDocuments() const override { return awaitedDocuments_ > 0; }

private:
    using Entries = std::vector<const DesktopEntry*>;

    /// The command words of a terminal, which takes a program and its arguments behind them; empty without one.
    [[nodiscard]] std::vector<std::string> terminalCommand() const;
    /// The path of the program; none when the application cannot be run.
    [[nodiscard]] std::optional<std::string> programOf(const DesktopEntry&) const;
    [[nodiscard]] std::shared_ptr<const ApplicationRecord> recordOf(const DesktopEntry&) const;

    [[nodiscard]] Entries ownersOfDocument(const std::string& identifier, const std::string& mimeType) const;
    [[nodiscard]] Entries ownersOfType(const std::string& mimeType) const;
    [[nodiscard]] Entries defaultsOfType(const std::string& mimeType) const;
    void addInstalled(const std::vector<std::string>& identifiers, Entries& into) const;
    [[nodiscard]] Applications recordsOf(const Entries&) const;

    void downloadAndStart(const std::string& bundleIdentifier, const URL& document);
    [[nodiscard]] std::optional<Error> start(const std::string& bundleIdentifier, const URL& document);
    [[nodiscard]] std::optional<Error> start(const DesktopEntry&, const std::string& program, const URL& document,
                                             const std::string& link);
    [[nodiscard]] std::optional<Error> start(const DesktopEntry&, const std::string& program,
                                             std::vector<std::string> arguments, const URL& document);
    void logEnd(const std::string& name, int status) const;

    const DesktopFolders folders_;
    const DesktopServices services_;
    mutable ApplicationCatalog catalog_;
    ChildWatcher watcher_;
    std::size_t awaitedDocuments_ = 0;
    std::atomic<bool> isStopping_ = false;
    OperationQueue downloads_{"orvane.TesselDriveApp.handover", QualityOfService::UserInitiated};
};

} // namespace tessel
