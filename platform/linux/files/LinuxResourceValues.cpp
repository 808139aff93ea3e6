#include "platform/linux/files/LinuxResourceValues.h"

#include "platform/linux/cloud/DocumentIdentifiers.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/files/AliasFile.h"
#include "platform/linux/files/ExtendedAttributes.h"

#include <fcntl.h>
#include <unistd.h>

#include <optional>
#include <string>

namespace tessel {

namespace {

Value valueOf(const std::optional<Date>& date)
{
    return date ? Value(*date) : Value();
}

Value valueOf(const std::optional<std::string>& text)
{
    return text ? Value(*text) : Value();
}

Value byteCountValue(std::uint64_t bytes)
{
    return static_cast<std::int64_t>(bytes);
}

// One item as it is being described: what two keys need is found out once, and only when a key needs it.
class Item {
public:
    Item(const TypeRegistry& types, DocumentIdentifiers& identifiers, const URL& url)
        : types_(types), url_(url), identifiers_(identifiers)
    {
    }
    virtual ~Item() = default;

    Value value(ResourceKey key)
    {
        switch (key) {
        case ResourceKey::TypeIdentifier:
            return type();
        case ResourceKey::LocalizedTypeDescription:
            return valueOf(types_.description(type()));
        case ResourceKey::IsShared:
            return sharedRole().has_value();
        case ResourceKey::SharedItemRole:
            return valueOf(sharedRole());
        case ResourceKey::ParentDirectoryURL:
            return url_.deletingLastPathComponent();
        case ResourceKey::HasHiddenExtension:
            return false;
        case ResourceKey::DocumentIdentifier:
            return documentIdentifier();
        default:
            return ownValue(key);
        }
    }

protected:
    virtual Value ownValue(ResourceKey) = 0;
    virtual std::string findType() = 0;
    virtual std::optional<std::string> findSharedRole() = 0;

    const std::string& type()
    {
        if (!type_)
            type_ = findType();
        return *type_;
    }

    const TypeRegistry& types_;
    const URL& url_;

private:
    const std::optional<std::string>& sharedRole()
    {
        if (!sharedRole_)
            sharedRole_ = findSharedRole();
        return *sharedRole_;
    }

    [[nodiscard]] Value documentIdentifier() const
    {
        const auto identifier = identifiers_.identifierOf(url_);
        return identifier ? Value(std::int64_t{*identifier}) : Value();
    }

    DocumentIdentifiers& identifiers_;
    std::optional<std::string> type_;
    std::optional<std::optional<std::string>> sharedRole_;
};

class FileItem final : public Item {
public:
    FileItem(const TypeRegistry& types, DocumentIdentifiers& identifiers, const URL& url,
             const FileAttributes& attributes)
        : Item(types, identifiers, url), attributes_(attributes)
    {
    }

private:
    Value ownValue(ResourceKey key) override
    {
        switch (key) {
        case ResourceKey::Name:
        case ResourceKey::LocalizedName:
            return std::string(url_.lastPathComponent());
        case ResourceKey::FileSize:
            return attributes_.size && !isFolder() ? byteCountValue(*attributes_.size) : Value();
        case ResourceKey::CreationDate:
            return valueOf(attributes_.creationDate);
        case ResourceKey::ContentModificationDate:
            return valueOf(attributes_.modificationDate);
        case ResourceKey::IsDirectory:
            return isFolder();
        case ResourceKey::IsPackage:
            return isPackage();
        case ResourceKey::IsRegularFile:
            return attributes_.kind == FileKind::RegularFile;
        case ResourceKey::DownloadingStatus:
            return DownloadingStatus::kCurrent;
        case ResourceKey::ThumbnailDictionary:
            return canHavePicture() ? Value::Dictionary{{kThumbnail1024, url_}} : Value();
        default:
            return {};
        }
    }

    [[nodiscard]] bool canHavePicture()
    {
        return attributes_.kind == FileKind::RegularFile && attributes_.size.value_or(0) > 0 &&
               (types_.conforms(type(), "public.image") || types_.conforms(type(), "com.adobe.pdf"));
    }
    [[nodiscard]] bool isFolder() const { return attributes_.kind == FileKind::Directory; }
    [[nodiscard]] bool isPackage() const { return isFolder() && types_.isPackageName(url_.lastPathComponent()); }

    std::string findType() override
    {
        if (attributes_.kind == FileKind::SymbolicLink)
            return std::string(TypeIdentifier::kSymbolicLink);
        if (isFolder() && !isPackage())
            return std::string(TypeIdentifier::kFolder);
        if (attributes_.kind == FileKind::Other)
            return std::string(TypeIdentifier::kData);
        if (!isFolder() && isAliasFile(url_))
            return std::string(TypeIdentifier::kAliasFile);
        return types_.identifierForFileName(url_.lastPathComponent());
    }

    std::optional<std::string> findSharedRole() override
    {
        const auto role = extendedAttribute(url_, kSharedAttribute);
        if (role && (*role == SharedItemRole::kOwner || *role == SharedItemRole::kParticipant))
            return *role;
        return std::nullopt;
    }

    const FileAttributes& attributes_;
};

class PromisedItem final : public Item {
public:
    PromisedItem(const TypeRegistry& types, DocumentIdentifiers& identifiers, const URL& url,
                 const PlaceholderRecord& record)
        : Item(types, identifiers, url), record_(record)
    {
    }

private:
    Value ownValue(ResourceKey key) override
    {
        switch (key) {
        case ResourceKey::Name:
        case ResourceKey::LocalizedName:
            return record_.name;
        case ResourceKey::FileSize:
            return byteCountValue(record_.size);
        case ResourceKey::CreationDate:
            return valueOf(record_.creationDate);
        case ResourceKey::ContentModificationDate:
            return record_.modificationDate;
        case ResourceKey::IsDirectory:
        case ResourceKey::IsPackage:
            return types_.conforms(type(), TypeIdentifier::kPackage);
        case ResourceKey::IsRegularFile:
            return !types_.conforms(type(), TypeIdentifier::kPackage);
        case ResourceKey::DownloadingStatus:
            return DownloadingStatus::kNotDownloaded;
        default:
            return {};
        }
    }

    std::string findType() override { return record_.type; }
    std::optional<std::string> findSharedRole() override { return record_.sharedRole; }

    const PlaceholderRecord& record_;
};

// Cheaper than asking for attributes, most of all where there is nothing.
bool exists(const URL& url)
{
    return ::faccessat(AT_FDCWD, url.path().c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0;
}

ResourceValues::Values valuesOf(Item&& item, std::span<const ResourceKey> keys)
{
    ResourceValues::Values values;
    for (const auto key : keys)
        if (auto value = item.value(key); !value.isNone())
            values.emplace(key, std::move(value));
    return values;
}

} // namespace

Result<ResourceValues::Values> LinuxResourceValues::values(std::span<const ResourceKey> keys, const URL& url,
                                                           ValueVariant variant) const
{
    const bool promised = variant == ValueVariant::Promised;
    const bool isPlaceholder = promised && isPlaceholderName(url.lastPathComponent());
    const auto attributes = files_.attributes(url.path());
    if (attributes && !isPlaceholder)
        return valuesOf(FileItem(types_, identifiers_, url, *attributes), keys);
    if (!attributes && (!promised || attributes.error().code != ErrorCode::kNoSuchFile))
        return attributes.error();
    const auto record = readPlaceholder(isPlaceholder ? url : placeholderURL(url));
    if (!record)
        return attributes || record.error().code != ErrorCode::kNoSuchFile ? record.error() : attributes.error();
    return valuesOf(PromisedItem(types_, identifiers_, url, *record), keys);
}

bool LinuxResourceValues::promisedItemIsReachable(const URL& url) const
{
    return exists(url) || exists(placeholderURL(url));
}

URL LinuxResourceValues::physicalURLOfPromisedItem(const URL& url) const
{
    // Most items have no placeholder: looking for that first leaves one question to the file system.
    auto placeholder = placeholderURL(url);
    return exists(placeholder) && !exists(url) ? placeholder : url;
}

std::optional<URL> LinuxResourceValues::logicalURLOfPromise(const URL& url) const
{
    if (!isPlaceholderName(url.lastPathComponent()))
        return std::nullopt;
    const auto record = readPlaceholder(url);
    return record ? std::optional(url.deletingLastPathComponent().appending(record->name)) : std::nullopt;
}

} // namespace tessel
