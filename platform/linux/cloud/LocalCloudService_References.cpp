#include "platform/base/PercentEncoding.h"
#include "platform/files/FileManager.h"
#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/cloud/ExternalReference.h"
#include "platform/linux/cloud/LocalCloudService.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/run/MainQueue.h"

#include <unistd.h>

#include <cerrno>

namespace tessel {

namespace {

constexpr int kMaximumSteps = 8; // from reference to reference: more are a ring, or as good as one

bool isRegularFile(const FileManager& files, const URL& url)
{
    const auto attributes = files.attributes(url.path());
    return attributes && attributes->kind == FileKind::RegularFile;
}

/// The URL that a document has on the device, also when it is not there.
URL logicalURL(const URL& url)
{
    const auto record = isPlaceholderName(url.lastPathComponent()) ? readPlaceholder(url) : errnoError(EINVAL, url);
    return record ? url.deletingLastPathComponent().appending(record->name) : url;
}

Error notInDriveError(const URL& url)
{
    auto error = errnoError(ENOENT, url);
    error.domain = Domain::Cloud;
    error.code = CloudErrorCode::kNotInDrive;
    return error;
}

constexpr std::string_view kBookmarkScheme = "drive:";

std::string bookmarkOf(const std::string& pathInRoot)
{
    return std::string(kBookmarkScheme) + '/' + percentEncodedPath(pathInRoot);
}

/// The path in the root, without the first '/'.
std::optional<std::string> pathOfBookmark(std::string_view bookmark)
{
    const auto path =
        bookmark.starts_with(kBookmarkScheme) ? percentDecoded(bookmark.substr(kBookmarkScheme.size())) : std::nullopt;
    return path && path->starts_with('/') ? std::optional(path->substr(1)) : std::nullopt;
}

} // namespace

std::optional<std::string> LocalCloudService::pathInSyncedRoot(const URL& url) const
{
    return places_.pathInRoot(url);
}

void LocalCloudService::bookmarkableString(const URL& url, const BookmarkHandler& answer) const
{
    const auto target = isExternalDocumentReference(url) ? resolveExternalDocumentReference(url) : url;
    const auto path = target ? pathInSyncedRoot(logicalURL(*target)) : std::nullopt;
    auto string = path ? Result(bookmarkOf(*path)) : Result<std::string>(notInDriveError(url));
    options_.mainQueue.async([answer, string = std::move(string)] { answer(string); });
}

void LocalCloudService::urlOfBookmarkableString(const std::string& bookmark, const LocationHandler& answer) const
{
    const auto path = pathOfBookmark(bookmark);
    const auto url = path ? places_.urlAt(*path) : std::nullopt;
    auto item = url && isInDrive(*url) ? itemOrPromise(*url) : Result<URL>(notInDriveError(URL::file(bookmark)));
    if (!item)
        item = notInDriveError(url ? *url : URL::file(bookmark));
    options_.mainQueue.async([answer, item = std::move(item)] { answer(item); });
}

// A document that is not on the device is a placeholder, which moves as any file does, and its content lies in the one
// store of the home. So it is enough that both folders are there and the second takes what is moved.
bool LocalCloudService::canMoveWithoutDownloading(const CloudContainer& from, const CloudContainer& to) const
{
    return ::access(from.documentsURL.path().c_str(), X_OK) == 0 &&
           ::access(to.documentsURL.path().c_str(), W_OK | X_OK) == 0;
}

bool LocalCloudService::isExternalDocumentReference(const URL& url) const
{
    return isExternalReferenceName(url) &&
           (isRegularFile(options_.files, url) || isRegularFile(options_.files, placeholderURL(url)));
}

Result<URL> LocalCloudService::resolveExternalDocumentReference(const URL& url) const
{
    auto reference = url;
    for (int step = 0; step < kMaximumSteps; ++step) {
        if (!isExternalDocumentReference(reference))
            return step == 0 ? Result<URL>(damagedReferenceError(url)) : itemOrPromise(reference);
        auto target = targetOfReference(reference);
        if (!target)
            return target;
        reference = std::move(target.value());
    }
    return damagedReferenceError(url);
}

/// @returns the logical URL, which may be a reference again
Result<URL> LocalCloudService::targetOfReference(const URL& url) const
{
    const auto reference = readExternalReference(url);
    if (!reference)
        return reference.error();
    auto target = documentWith(reference->documentIdentifier);
    if (!target && reference->path)
        target = places_.urlAt(*reference->path);
    if (!target || !isInDrive(*target))
        return errnoError(ENOENT, url);
    return *target;
}

std::optional<URL> LocalCloudService::documentWith(std::optional<std::uint32_t> identifier) const
{
    if (!identifier)
        return std::nullopt;
    const auto location = identifiers_->locate(*identifier);
    const bool isThere = location && *location && (*location)->isTheDocument;
    return isThere ? std::optional((*location)->url) : std::nullopt;
}

Result<URL> LocalCloudService::itemOrPromise(const URL& url) const
{
    if (options_.files.attributes(url.path()))
        return url;
    const auto placeholder = placeholderURL(url);
    if (options_.files.attributes(placeholder.path()))
        return placeholder;
    return errnoError(ENOENT, url);
}

} // namespace tessel
