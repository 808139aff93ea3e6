#pragma once

#include "platform/base/Date.h"
#include "platform/base/URL.h"
#include "platform/base/Value.h"
#include "platform/files/FileManager.h"
#include "platform/files/ResourceValues.h"
#include "platform/text/TextServices.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessel {

class OperationQueue;

/// One entry of the drive as it was when it was read: a document, a folder, a package (a folder shown as one document),
/// a link or an alias. Never refreshed: after a change a new item is made. Describing a document never downloads it.
///
/// Everything runs on the calling thread; an item does no locking of its own.
class DRItem {
public:
    /// Reads the item. Null, and a line in the log, when there is no URL or nothing can be read there. There is no item
    /// without a URL, hence no other constructor.
    [[nodiscard]] static std::shared_ptr<DRItem> initWithURL(const std::optional<URL>&);

    /// Reads everything anew; an equal URL changes nothing.
    void setUrl(const std::optional<URL>&);

    /// The URL that the item was made from.
    [[nodiscard]] const std::optional<URL>& url() const { return url_; }
    /// The URL that the values describe: the target of an external document reference, a link or an alias, else `url`.
    /// None for a reference or an alias without target; the values of such a reference are its own file's.
    [[nodiscard]] const std::optional<URL>& resolvedURL() const { return cached_.resolvedURL; }
    /// Where `resolvedURL` really lies: its placeholder, else the very same object.
    [[nodiscard]] const std::optional<URL>& promiseURL() const { return cached_.promiseURL; }
    [[nodiscard]] const std::optional<URL>& parentDirectoryURL() const { return cached_.parentDirectoryURL; }
    /// The text in a symbolic link, as stored; only of an item whose values had to be taken from its attributes.
    [[nodiscard]] const std::optional<std::string>& symlinkTarget() const { return cached_.symlinkTarget; }

    /// The name to show; an app library's own for its folder. Bytes of a file name: not always UTF-8.
    [[nodiscard]] const std::optional<std::string>& localizedName() const { return cached_.localizedName; }
    [[nodiscard]] const std::optional<std::string>& typeIdentifier() const { return cached_.typeIdentifier; }
    /// The item's kind, in words.
    [[nodiscard]] const std::optional<std::string>& localizedTypeDescription() const
    {
        return cached_.localizedTypeDescription;
    }
    /// Bytes; of a package the sum of its files. None when unknown.
    [[nodiscard]] const std::optional<std::uint64_t>& fileSize() const { return cached_.fileSize; }
    [[nodiscard]] std::optional<std::string> friendlyFileSize() const;
    [[nodiscard]] const std::optional<Date>& creationDate() const { return cached_.creationDate; }
    [[nodiscard]] const std::optional<Date>& contentModificationDate() const { return cached_.contentModificationDate; }
    [[nodiscard]] std::optional<std::string> friendlyCreationDate(DateStyle) const;
    [[nodiscard]] std::optional<std::string> friendlyContentModificationDate(DateStyle) const;
    /// None for a value that is no date.
    [[nodiscard]] static std::optional<std::string> friendlyDate(const Value&, DateStyle);
    /// Tag names; none when they cannot be read.
    [[nodiscard]] const std::optional<std::vector<std::string>>& tags() const { return cached_.tags; }

    /// The top folder of an app library.
    [[nodiscard]] bool isContainer() const { return cached_.isContainer; }
    /// Never set for a package.
    [[nodiscard]] bool isDirectory() const { return cached_.isDirectory; }
    [[nodiscard]] bool isPackage() const { return cached_.isPackage; }
    /// A symbolic link or an alias file.
    [[nodiscard]] bool isSymlink() const { return cached_.isSymlink; }
    /// The URL is an external document reference.
    [[nodiscard]] bool isBookmark() const { return cached_.isBookmark; }
    /// A placeholder stands for the item.
    [[nodiscard]] bool isPromise() const;
    [[nodiscard]] bool isDownloaded() const { return cached_.isDownloaded; }
    /// Whether the quick preview can show more of the item than its icon; told by its type.
    [[nodiscard]] bool canPreview() const;
    [[nodiscard]] bool hasHiddenExtension() const { return cached_.hasHiddenExtension; }
    /// Whether the user may rename the item.
    [[nodiscard]] bool renameable() const { return cached_.renameable; }

    /// The file of the cached thumbnail image, looked up by the first call and never again.
    [[nodiscard]] const std::optional<URL>& thumbnail();
    [[nodiscard]] bool thumbnailFetched() const { return cached_.thumbnailFetched; }
    [[nodiscard]] bool canGenerateThumbnail() const { return false; }
    /// Calls back with none, before it returns.
    void generateThumbnail(const std::function<void(const std::optional<URL>&)>& completion) const;
    /// The queue for work on thumbnails; it has no thread before its first operation.
    [[nodiscard]] static OperationQueue& getThumbnailQueue();

    /// One line for the log.
    [[nodiscard]] std::string description() const;

private:
    /// All that is read; made anew, it is the cleared state.
    struct CachedValues {
        std::optional<URL> resolvedURL;
        std::optional<URL> promiseURL;
        std::optional<URL> parentDirectoryURL;
        std::optional<URL> thumbnail;
        std::optional<std::string> symlinkTarget;
        std::optional<std::string> localizedName;
        std::optional<std::string> typeIdentifier;
        std::optional<std::string> localizedTypeDescription;
        std::optional<std::uint64_t> fileSize;
        std::optional<Date> creationDate;
        std::optional<Date> contentModificationDate;
        std::optional<std::vector<std::string>> tags;
        bool isContainer = false;
        bool isDirectory = false;
        bool isPackage = false;
        bool isSymlink = false;
        bool isBookmark = false;
        bool isDownloaded = false;
        bool thumbnailFetched = false;
        bool hasHiddenExtension = true;
        bool renameable = true;
    };

    DRItem() = default;

    void clearValues() { cached_ = CachedValues(); }
    bool cacheValues();
    bool readValues(const URL& urlRead);
    void initFromKeysAndValues(const ResourceValues::Values&, const URL& withURL);
    void followLink(const URL& urlRead);
    void initPackageAndFolderFlags(const ResourceValues::Values&);
    void initContainerAndSharing(const ResourceValues::Values&, const URL& urlRead);
    bool initFromAttributes();
    bool initKindFromAttributes(std::optional<FileKind>);
    void initSymlinkFromAttributes();
    void describeType();

    void setResolvedURL(std::optional<URL>);
    [[nodiscard]] std::optional<URL> resolveTrovelAlias(const URL&) const;
    [[nodiscard]] static std::uint64_t sizeOfPackage(const std::optional<URL>&);
    void fetchThumbnail();
    void updateThumbnailImage(const Value& thumbnails);

    std::optional<URL> url_;
    CachedValues cached_;
};

} // namespace tessel
