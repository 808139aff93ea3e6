#include "app/common/Log.h"
#include "app/common/TSDAdditions.h"
#include "files/DRItem.h"
#include "platform/cloud/CloudService.h"
#include "platform/files/FileCoordinator.h"
#include "platform/files/TypeRegistry.h"

namespace tessel {

namespace {

// Read in one go for every item.
constexpr ResourceKey kItemKeys[] = {
    ResourceKey::Name,
    ResourceKey::LocalizedName,
    ResourceKey::TypeIdentifier,
    ResourceKey::LocalizedTypeDescription,
    ResourceKey::FileSize,
    ResourceKey::CreationDate,
    ResourceKey::ContentModificationDate,
    ResourceKey::IsDirectory,
    ResourceKey::IsPackage,
    ResourceKey::HasHiddenExtension,
    ResourceKey::ParentDirectoryURL,
    ResourceKey::IsShared,
    ResourceKey::SharedItemRole,
    ResourceKey::DownloadingStatus,
};

template <typename T>
std::optional<T> valueIn(const ResourceValues::Values& values, ResourceKey key)
{
    const auto found = values.find(key);
    const auto* content = found == values.end() ? nullptr : found->second.get<T>();
    return content ? std::optional(*content) : std::nullopt;
}

bool isSet(const ResourceValues::Values& values, ResourceKey key)
{
    return valueIn<bool>(values, key).value_or(false);
}

std::optional<std::uint64_t> fileSizeIn(const ResourceValues::Values& values)
{
    const auto size = valueIn<std::int64_t>(values, ResourceKey::FileSize);
    return size ? std::optional(static_cast<std::uint64_t>(*size)) : std::nullopt;
}

} // namespace

bool DRItem::cacheValues()
{
    clearValues();
    if (!url_)
        return false;
    setResolvedURL(tsd_URLByResolvingBookmark(*url_));
    cached_.isBookmark = platform::installed().cloud.isExternalDocumentReference(*url_);
    if (!cached_.resolvedURL)
        return initFromAttributes() || readValues(*url_);
    const auto url = *cached_.resolvedURL;
    bool result = true;
    {
        const SecurityScopedAccess access(platform::installed().resources, url);
        static_cast<void>(FileCoordinator().coordinateReading(url, ReadingOptions::ImmediatelyAvailableMetadataOnly,
                                                              [&](const URL& read) { result = readValues(read); }));
    }
    return result || initFromAttributes();
}

bool DRItem::readValues(const URL& urlRead)
{
    TSD_FUNCTION("-[DRItem cacheValues]_block_invoke");
    const auto& resources = platform::installed().resources;
    if (!resources.promisedItemIsReachable(urlRead))
        return false;
    auto values = resources.values(kItemKeys, urlRead, ValueVariant::Promised);
    if (!values && values.error().code == ErrorCode::kNoSuchFile)
        return false;
    if (!values) {
        TSD_WARNING("Failed to read promised item values for URL %@", urlRead);
        values = resources.values(kItemKeys, urlRead, ValueVariant::Plain);
    }
    if (!values)
        return false;
    initFromKeysAndValues(*values, urlRead);
    if (cached_.resolvedURL)
        if (auto tags = platform::installed().cloud.tagNames(*cached_.resolvedURL))
            cached_.tags = *std::move(tags);
    return true;
}

void DRItem::initFromKeysAndValues(const ResourceValues::Values& values, const URL& withURL)
{
    cached_.localizedName = valueIn<std::string>(values, ResourceKey::LocalizedName);
    if (!cached_.localizedName)
        cached_.localizedName = valueIn<std::string>(values, ResourceKey::Name);
    cached_.typeIdentifier = valueIn<std::string>(values, ResourceKey::TypeIdentifier);
    cached_.localizedTypeDescription = valueIn<std::string>(values, ResourceKey::LocalizedTypeDescription);
    describeType();
    followLink(withURL);
    cached_.fileSize = fileSizeIn(values);
    cached_.creationDate = valueIn<Date>(values, ResourceKey::CreationDate);
    cached_.contentModificationDate = valueIn<Date>(values, ResourceKey::ContentModificationDate);
    cached_.parentDirectoryURL = valueIn<URL>(values, ResourceKey::ParentDirectoryURL);
    initPackageAndFolderFlags(values);
    cached_.hasHiddenExtension = isSet(values, ResourceKey::HasHiddenExtension);
    initContainerAndSharing(values, withURL);
    const auto status = valueIn<std::string>(values, ResourceKey::DownloadingStatus);
    cached_.isDownloaded = status && *status != DownloadingStatus::kNotDownloaded;
}

void DRItem::describeType()
{
    if (!cached_.typeIdentifier)
        return;
    if (auto description = platform::installed().types.description(*cached_.typeIdentifier))
        cached_.localizedTypeDescription = std::move(description);
}

// A link's one-component target needs no care here: links resolve against their own folder, also where nothing is.
void DRItem::followLink(const URL& urlRead)
{
    const auto& services = platform::installed();
    const auto& kind = cached_.localizedTypeDescription;
    if (cached_.typeIdentifier == TypeIdentifier::kSymbolicLink) {
        cached_.isSymlink = true;
        setResolvedURL(services.files.resolvingSymbolicLinks(urlRead));
    } else if (kind && services.text.equalIgnoringCase(*kind, "Alias")) {
        cached_.isSymlink = true;
        setResolvedURL(resolveTrovelAlias(*url_));
    }
}

void DRItem::initPackageAndFolderFlags(const ResourceValues::Values& values)
{
    cached_.isPackage = isSet(values, ResourceKey::IsPackage);
    cached_.isDirectory = isSet(values, ResourceKey::IsDirectory) && !cached_.isPackage;
    if (!cached_.isPackage || cached_.fileSize)
        return;
    if (const auto size = sizeOfPackage(cached_.resolvedURL); size != 0)
        cached_.fileSize = size;
}

void DRItem::initContainerAndSharing(const ResourceValues::Values& values, const URL& urlRead)
{
    const auto& cloud = platform::installed().cloud;
    cached_.isContainer = cloud.isContainerTopFolder(urlRead);
    if (!cached_.isContainer) {
        cached_.renameable =
            !(isSet(values, ResourceKey::IsShared) &&
              valueIn<std::string>(values, ResourceKey::SharedItemRole) == SharedItemRole::kParticipant);
        return;
    }
    cached_.renameable = false;
    if (const auto container = cloud.containerForURL(urlRead))
        cached_.localizedName = container->localizedName;
}

bool DRItem::initFromAttributes()
{
    const auto attributes = platform::installed().files.attributes(url_->path());
    if (!attributes)
        return false;
    cached_.localizedName = url_->lastPathComponent();
    cached_.parentDirectoryURL = url_->deletingLastPathComponent();
    if (!initKindFromAttributes(attributes->kind))
        return false;
    setResolvedURL(cached_.resolvedURL);
    describeType();
    cached_.fileSize = attributes->size;
    cached_.creationDate = attributes->creationDate;
    cached_.contentModificationDate = attributes->modificationDate;
    cached_.hasHiddenExtension = attributes->extensionHidden;
    return !cached_.localizedName->empty();
}

bool DRItem::initKindFromAttributes(std::optional<FileKind> kind)
{
    switch (kind.value_or(FileKind::RegularFile)) {
    case FileKind::SymbolicLink:
        initSymlinkFromAttributes();
        return true;
    case FileKind::Directory:
        cached_.typeIdentifier = TypeIdentifier::kFolder;
        cached_.isDirectory = true;
        return true;
    case FileKind::RegularFile:
        return true;
    case FileKind::Other:
        return false;
    }
    return false;
}

void DRItem::initSymlinkFromAttributes()
{
    cached_.typeIdentifier = TypeIdentifier::kSymbolicLink;
    cached_.isSymlink = true;
    const auto target = platform::installed().files.destinationOfSymbolicLink(*url_);
    if (!target)
        return;
    cached_.symlinkTarget = *target;
    cached_.resolvedURL = URL::file(*target);
    // A bare name means a neighbour of the link; "/" is a single component, too, but absolute.
    if (!target->starts_with('/') && cached_.resolvedURL->pathComponents().size() == 1)
        cached_.resolvedURL = cached_.parentDirectoryURL->appending(*target);
}

void DRItem::setResolvedURL(std::optional<URL> resolved)
{
    cached_.promiseURL.reset();
    if (resolved)
        cached_.promiseURL = platform::installed().resources.physicalURLOfPromisedItem(*resolved);
    cached_.resolvedURL = std::move(resolved);
}

std::optional<URL> DRItem::resolveTrovelAlias(const URL& url) const
{
    TSD_FUNCTION("-[DRItem resolveTrovelAlias:]");
    if (isPromise())
        TSD_WARNING("Trovel Alias is promised -- unable to determine target without downloading: %@", url);
    const auto target = platform::installed().files.resolvingAliasFile(url);
    if (target)
        return *target;
    TSD_WARNING("Error resolving Alias: %@", target.error());
    return std::nullopt;
}

} // namespace tessel
