#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"
#include "platform/base/Value.h"
#include "platform/cloud/CloudContainer.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessel {

/// Posted on the main thread after the signed-in account changed.
inline constexpr const char* kCloudIdentityChangedNotification = "CloudIdentityChanged";

/// The cloud document service on this device: who is signed in, which containers there are, and what belongs to the
/// drive. Safe to use from any thread but for `signIn` and `signOut`, which belong to the main thread.
class CloudService {
public:
    using BookmarkHandler = std::function<void(const Result<std::string>&)>;
    using LocationHandler = std::function<void(const Result<URL>&)>;

    virtual ~CloudService() = default;

    /// Equal for the same account, different for another; none while nobody is signed in.
    [[nodiscard]] virtual std::optional<Data> identityToken() const = 0;

    /// Signs in, in place of whoever was; the account is made when it is new. Posts the notification.
    [[nodiscard]] virtual std::optional<Error> signIn(const std::string& accountName) = 0;
    [[nodiscard]] virtual std::optional<Error> signOut() = 0;

    /// The container of the drive itself. Its documents folder is the drive's top folder.
    [[nodiscard]] virtual std::shared_ptr<const CloudContainer> defaultContainer() const = 0;
    /// The other containers: the app libraries shown in the drive's top folder, in no particular order.
    [[nodiscard]] virtual std::vector<std::shared_ptr<const CloudContainer>> libraries() const = 0;
    /// The container that holds a URL, or none for a URL outside the drive.
    [[nodiscard]] virtual std::shared_ptr<const CloudContainer> containerForURL(const URL&) const = 0;

    /// Whether the URL is the top folder of a library.
    [[nodiscard]] virtual bool isContainerTopFolder(const URL&) const = 0;
    /// Whether the URL lies in the drive, its links resolved; the drive's folders themselves do.
    [[nodiscard]] virtual bool isInDrive(const URL&) const = 0;
    [[nodiscard]] virtual bool isInTrash(const URL&) const = 0;

    /// Where the item lies below the folder that holds all containers ("orvane~Quillbox/Documents/Plan.txt"), links on
    /// the way to it resolved; none for a URL outside the drive. A bound drive counts as the default container.
    [[nodiscard]] virtual std::optional<std::string> pathInSyncedRoot(const URL&) const = 0;
    /// Whether what lies in one container can be moved into another as it is, nothing downloaded for it.
    [[nodiscard]] virtual bool canMoveWithoutDownloading(const CloudContainer& from,
                                                         const CloudContainer& to) const = 0;

    /// Whether the item is a small file that stands for a document elsewhere in the drive, whether that can be found or
    /// not. Its content is not read.
    [[nodiscard]] virtual bool isExternalDocumentReference(const URL&) const = 0;
    /// The document that a reference stands for, or the promise of it while it is not on the device; a document that
    /// was moved is found where it is now, and one reference may stand for another.
    /// @returns a corrupt-file error (259) for what is no sound reference, or one of a ring, and a no-such-file error
    ///          (4) when its document is not in the drive
    virtual Result<URL> resolveExternalDocumentReference(const URL&) const = 0;

    /// Asks for a string by which the item is found on any of the user's devices; a reference stands for its document.
    /// @param answer told on the main queue: the string, or error 7 of the cloud's own for what is not in the drive
    virtual void bookmarkableString(const URL&, const BookmarkHandler& answer) const = 0;

    /// Asks where the item of a bookmarkable string is on this device, whether its content is here or not.
    /// @param answer told on the main queue: the item, or error 7 of the cloud's own for what is no bookmarkable
    /// string,
    ///        leads out of the drive, or to nothing
    virtual void urlOfBookmarkableString(const std::string&, const LocationHandler& answer) const = 0;

    /// Deletes all that a library holds, on this device and in the cloud, in coordination with everybody who has to do
    /// with it; the library is then no longer among the libraries, until its application keeps something in it again.
    /// Blocks until that is done.
    /// @returns why something of it is left; the drive's own container is refused (3328)
    [[nodiscard]] virtual std::optional<Error> deleteAllContents(const CloudContainer&) = 0;

    /// The item's tag names; empty without any.
    virtual Result<std::vector<std::string>> tagNames(const URL&) const = 0;

    /// Gives up the copy of a document that is on the device, in coordination with everybody who has to do with it; the
    /// document stays in the drive. One that is not on the device already is left alone.
    /// @returns why it stays on the device: the coordinator's error, it is no single file (3328), it is open in a
    /// program
    ///          or changed meanwhile, or its content could not be sent
    [[nodiscard]] virtual std::optional<Error> evictDocument(const URL&) = 0;
};

} // namespace tessel
