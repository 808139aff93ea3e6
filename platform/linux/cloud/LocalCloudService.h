#pragma once

#include "platform/cloud/CloudService.h"
#include "platform/linux/cloud/Catalog.h"
#include "platform/linux/cloud/DocumentIdentifiers.h"
#include "platform/linux/cloud/DrivePlaces.h"

namespace tessel {

class DocumentStore;
class FileCoordinationService;
class FileManager;
class MainQueue;
class NotificationCenter;
class TextServices;
class TypeRegistry;
class UnifiedLog;

/// What the cloud service works with; the services outlive it.
struct CloudOptions {
    URL home;                 ///< a folder of the program's own that can be written
    std::optional<URL> drive; ///< an existing folder that takes the place of the drive's own top folder
    MainQueue& mainQueue;
    NotificationCenter& notifications;
    UnifiedLog& log;
    const TextServices& text;
    FileManager& files;
    const TypeRegistry& types;
    FileCoordinationService& coordination;
    const DocumentStore& documents;
};

/// The cloud service of a device that has its drive in folders below a home, without a server:
///
///     <home>/catalog.sqlite                           accounts and containers
///     <home>/Mobile Documents/                        the synced root, made at the first start with an example drive
///     <home>/Mobile Documents/orvane~Quillbox/        the default container: the drive's top folder
///     <home>/Mobile Documents/<library>/Documents/    an app library
///
/// A synced root that was there and is gone (not mounted) is never made anew. A damaged catalogue is set aside and made
/// from the tree. With a bound drive, that folder is the whole drive: there are no libraries, and nothing is added to
/// it.
class LocalCloudService final : public CloudService {
public:
    static Result<std::unique_ptr<LocalCloudService>> open(const CloudOptions&);

    /// The last known one while the catalogue cannot be read.
    [[nodiscard]] std::optional<Data> identityToken() const override;
    /// Refuses an empty name, one of more than 255 bytes, and one with control characters, by a formatting error
    /// (2048).
    [[nodiscard]] std::optional<Error> signIn(const std::string& accountName) override;
    /// The account keeps its token for the next time.
    [[nodiscard]] std::optional<Error> signOut() override;

    [[nodiscard]] std::shared_ptr<const CloudContainer> defaultContainer() const override;
    [[nodiscard]] std::vector<std::shared_ptr<const CloudContainer>> libraries() const override;
    [[nodiscard]] std::shared_ptr<const CloudContainer> containerForURL(const URL&) const override;

    [[nodiscard]] bool isContainerTopFolder(const URL&) const override;
    [[nodiscard]] bool isInDrive(const URL&) const override;
    [[nodiscard]] bool isInTrash(const URL&) const override;

    [[nodiscard]] std::optional<std::string> pathInSyncedRoot(const URL&) const override;
    [[nodiscard]] bool canMoveWithoutDownloading(const CloudContainer& from, const CloudContainer& to) const override;

    [[nodiscard]] bool isExternalDocumentReference(const URL&) const override;
    Result<URL> resolveExternalDocumentReference(const URL&) const override;

    /// "drive:" and the percent-encoded path below the folder that holds all containers.
    void bookmarkableString(const URL&, const BookmarkHandler& answer) const override;
    void urlOfBookmarkableString(const std::string&, const LocationHandler& answer) const override;

    /// The folder of its documents goes; what declares the library stays.
    [[nodiscard]] std::optional<Error> deleteAllContents(const CloudContainer&) override;

    Result<std::vector<std::string>> tagNames(const URL&) const override;

    /// Only in the home's own drive: a bound one has no place for the content (3328).
    [[nodiscard]] std::optional<Error> evictDocument(const URL&) override;

    /// Lives as long as the service.
    [[nodiscard]] DocumentIdentifiers& documentIdentifiers() const { return *identifiers_; }

private:
    LocalCloudService(const CloudOptions&, std::unique_ptr<Catalog>, const Catalog::Containers&);

    [[nodiscard]] std::optional<URL> documentWith(std::optional<std::uint32_t> identifier) const;
    [[nodiscard]] Result<URL> targetOfReference(const URL&) const;
    [[nodiscard]] Result<URL> itemOrPromise(const URL&) const;
    [[nodiscard]] std::optional<Error> refusalOfName(const std::string& accountName) const;
    void announceIdentityChange();
    void forgetToken();

    const CloudOptions options_;
    const std::unique_ptr<Catalog> catalog_;
    mutable std::mutex mutex_;              ///< of the two that follow
    mutable std::optional<Data> lastToken_; ///< as it was read last
    mutable bool isReadable_ = true;        ///< false after the catalogue could not be read, until it can again
    DrivePlaces places_;                    ///< fixed once made
    const std::unique_ptr<DocumentIdentifiers> identifiers_;
};

} // namespace tessel
