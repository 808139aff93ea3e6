#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"
#include "platform/base/Value.h"

#include <map>
#include <optional>
#include <span>

namespace tessel {

/// What can be asked of an item; behind each the type of its Value.
enum class ResourceKey {
    Name,                     ///< text
    LocalizedName,            ///< text
    TypeIdentifier,           ///< text
    LocalizedTypeDescription, ///< text
    FileSize,                 ///< integer, bytes
    CreationDate,             ///< date
    ContentModificationDate,  ///< date
    IsDirectory,              ///< flag; also set for a package
    IsPackage,                ///< flag
    IsRegularFile,            ///< flag
    HasHiddenExtension,       ///< flag
    ParentDirectoryURL,       ///< URL
    IsShared,                 ///< flag
    SharedItemRole,           ///< text, one of SharedItemRole
    DownloadingStatus,        ///< text, one of DownloadingStatus
    ThumbnailDictionary,      ///< dictionary from a size's name to the URL of a file that has the picture
    DocumentIdentifier,       ///< integer, above 0 and of 32 bits; the first question has the document given one
};

namespace SharedItemRole {
inline constexpr const char* kOwner = "owner";
inline constexpr const char* kParticipant = "participant";
} // namespace SharedItemRole

namespace DownloadingStatus {
inline constexpr const char* kNotDownloaded = "not-downloaded";
inline constexpr const char* kCurrent = "current";
} // namespace DownloadingStatus

/// The entry of a thumbnail dictionary for 1024 × 1024 pixels.
inline constexpr const char* kThumbnail1024 = "1024x1024";

/// Plain values describe the file that is there. Promised values describe the cloud's item, whether its content is on
/// the device or not, and never cause a download.
enum class ValueVariant { Plain, Promised };

/// Reads the values of items. Synchronous, on the calling thread, safe from any thread.
class ResourceValues {
public:
    using Values = std::map<ResourceKey, Value>;

    virtual ~ResourceValues() = default;

    /// All values of `keys` that the item has, read in one go; a value that it does not have is missing from the map.
    /// A no-such-file error (4) when the item does not exist.
    virtual Result<Values> values(std::span<const ResourceKey> keys, const URL&, ValueVariant) const = 0;

    /// Whether the cloud's item exists, downloaded or not.
    [[nodiscard]] virtual bool promisedItemIsReachable(const URL&) const = 0;

    /// Where the item really lies: its placeholder while it is not downloaded, else the very same URL object.
    [[nodiscard]] virtual URL physicalURLOfPromisedItem(const URL&) const = 0;

    /// The URL of the item that a promise stands for: the document's own, while the promise is its placeholder. None
    /// for what is no promise.
    [[nodiscard]] virtual std::optional<URL> logicalURLOfPromise(const URL&) const = 0;

    /// Begins security-scoped access; a call that answers true is balanced by one stop.
    [[nodiscard]] virtual bool startAccessingSecurityScopedResource(const URL&) = 0;
    virtual void stopAccessingSecurityScopedResource(const URL&) = 0;
};

/// Security-scoped access for the length of a scope, where it is needed.
class SecurityScopedAccess {
public:
    SecurityScopedAccess(ResourceValues& resources, const URL& url)
        : resources_(resources), url_(url), started_(resources.startAccessingSecurityScopedResource(url))
    {
    }
    ~SecurityScopedAccess()
    {
        if (started_)
            resources_.stopAccessingSecurityScopedResource(url_);
    }
    SecurityScopedAccess(const SecurityScopedAccess&) = delete;
    SecurityScopedAccess& operator=(const SecurityScopedAccess&) = delete;

private:
    ResourceValues& resources_;
    const URL url_;
    const bool started_;
};

} // namespace tessel
