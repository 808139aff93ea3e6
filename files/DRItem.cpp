#include "files/DRItem.h"

#include "app/common/Log.h"
#include "files/FileUtils.h"
#include "platform/documents/PreviewableTypes.h"
#include "platform/files/FileCoordinator.h"
#include "platform/run/OperationQueue.h"

namespace tessel {

namespace {

std::string sameOr(const std::optional<URL>& url, const std::optional<URL>& other)
{
    return other == url ? "<same>" : describe(other);
}

// Bytes; 0 for an entry without a size, such as a folder.
std::uint64_t promisedSize(const URL& entry)
{
    constexpr ResourceKey kSize[] = {ResourceKey::FileSize};
    const auto values = platform::installed().resources.values(kSize, entry, ValueVariant::Promised);
    if (!values || values->empty())
        return 0;
    const auto* size = values->begin()->second.get<std::int64_t>();
    return size ? static_cast<std::uint64_t>(*size) : 0;
}

} // namespace

std::shared_ptr<DRItem> DRItem::initWithURL(const std::optional<URL>& url)
{
    TSD_FUNCTION("-[DRItem initWithURL:]");
    const std::shared_ptr<DRItem> item(new DRItem);
    item->url_ = url;
    if (item->cacheValues())
        return item;
    TSD_ERROR("Failed to cache values for URL %@", url);
    return nullptr;
}

void DRItem::setUrl(const std::optional<URL>& url)
{
    if (url == url_)
        return;
    url_ = url;
    static_cast<void>(cacheValues());
}

bool DRItem::canPreview() const
{
    return cached_.typeIdentifier && isPreviewable(*cached_.typeIdentifier);
}

std::optional<std::string> DRItem::friendlyFileSize() const
{
    if (!cached_.fileSize)
        return std::nullopt;
    return platform::installed().text.byteCount(*cached_.fileSize, ByteCountStyle::File);
}

std::optional<std::string> DRItem::friendlyCreationDate(DateStyle style) const
{
    return cached_.creationDate ? friendlyDate(*cached_.creationDate, style) : std::nullopt;
}

std::optional<std::string> DRItem::friendlyContentModificationDate(DateStyle style) const
{
    return cached_.contentModificationDate ? friendlyDate(*cached_.contentModificationDate, style) : std::nullopt;
}

std::optional<std::string> DRItem::friendlyDate(const Value& value, DateStyle style)
{
    const auto* date = value.get<Date>();
    return date ? std::optional(platform::installed().text.dateAndTime(*date, style)) : std::nullopt;
}

bool DRItem::isPromise() const
{
    const auto& promise = cached_.promiseURL;
    return promise && !(cached_.resolvedURL && promise->isSameObject(*cached_.resolvedURL));
}

std::uint64_t DRItem::sizeOfPackage(const std::optional<URL>& url)
{
    TSD_FUNCTION("-[DRItem sizeOfPackage:]");
    if (!url) {
        TSD_ERROR("sizeOfPackage: null URL");
        return 0;
    }
    std::uint64_t total = 0;
    const auto add = [&total](const URL& entry, const FileAttributes&) { total += promisedSize(entry); };
    platform::installed().files.enumerateDeep(*url, add, [](const URL& entry, const Error& error) {
        TSD_FUNCTION("-[DRItem sizeOfPackage:]_block_invoke");
        TSD_INFO("Error enumerating %@: %@", entry, error);
        return OnEnumerationError::Continue;
    });
    return total;
}

const std::optional<URL>& DRItem::thumbnail()
{
    if (!cached_.thumbnailFetched)
        fetchThumbnail();
    return cached_.thumbnail;
}

void DRItem::fetchThumbnail()
{
    cached_.thumbnailFetched = true;
    if (!cached_.resolvedURL)
        return;
    const SecurityScopedAccess access(platform::installed().resources, *cached_.resolvedURL);
    static_cast<void>(FileCoordinator().coordinateReading(
        *cached_.resolvedURL, ReadingOptions::ImmediatelyAvailableMetadataOnly, [this](const URL& url) {
            updateThumbnailImage(FileUtils::getResourceValue(ResourceKey::ThumbnailDictionary, url));
        }));
}

void DRItem::updateThumbnailImage(const Value& thumbnails)
{
    TSD_FUNCTION("-[DRItem updateThumbnailImage:]");
    const auto* bySize = thumbnails.get<Value::Dictionary>();
    if (!bySize)
        return;
    TSD_DEBUG("URL Thumbs: %@", thumbnails);
    const auto large = bySize->find(kThumbnail1024);
    const auto* image = large == bySize->end() ? nullptr : large->second.get<URL>();
    if (image)
        cached_.thumbnail = *image;
}

void DRItem::generateThumbnail(const std::function<void(const std::optional<URL>&)>& completion) const
{
    completion(std::nullopt);
}

OperationQueue& DRItem::getThumbnailQueue()
{
    static OperationQueue queue("thumbnailQueue", QualityOfService::Background);
    return queue;
}

std::string DRItem::description() const
{
    return "Name=" + describe(cached_.localizedName) + ", Size=" + describe(cached_.fileSize) +
           ", URL=" + describe(url_) + ", ResURL=" + sameOr(url_, cached_.resolvedURL) +
           ", PromiseURL=" + sameOr(url_, cached_.promiseURL) + ", " + (cached_.isDirectory ? "Directory, " : "") +
           (cached_.isPackage ? "Package, " : "") + (isPromise() ? "Promise, " : "Local,") +
           (cached_.isSymlink ? "Symlink, " : "");
}

} // namespace tessel
