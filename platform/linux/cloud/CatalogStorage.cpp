#include "platform/linux/cloud/CatalogStorage.h"

#include "platform/cloud/CloudService.h"
#include "platform/linux/cloud/DocumentIdentifiers.h"
#include "platform/linux/files/FileDescriptor.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <limits>

namespace tessel {

namespace {

constexpr std::size_t kPathReference = 8;
constexpr std::size_t kPathBegin = 16;

template <typename Number>
void put(std::span<std::byte> reply, std::size_t offset, Number number)
{
    std::memcpy(reply.data() + offset, &number, sizeof number);
}

bool fail(int errorNumber)
{
    errno = errorNumber;
    return false;
}

class OpenDocument final : public OpenObject {
public:
    OpenDocument(FileDescriptor file, DocumentIdentifiers::Location location, DocumentIdentifiers& identifiers)
        : file_(std::move(file)), location_(std::move(location)), identifiers_(identifiers)
    {
    }

    [[nodiscard]] bool queryAttributes(std::uint32_t attributes, std::uint32_t options,
                                       std::span<std::byte> reply) const override
    {
        constexpr auto kBoth = CommonAttributes::kDocumentIdentifier | CommonAttributes::kFullPath;
        constexpr auto kOptions =
            AttributeQueryOptions::kWithoutFollowing | AttributeQueryOptions::kExtendedCommonAttributes;
        if (attributes != kBoth || options != kOptions)
            return fail(EINVAL);
        const auto file = fileIdentity(file_.get());
        if (!file)
            return false;
        if (fileIdentity(location_.file.path()) != file) // renamed since it was opened
            return fail(ESTALE);
        const auto identifier = identifiers_.knownIdentifierOf(*file);
        return identifier ? answer(identifier->value_or(0), reply) : fail(EIO);
    }

private:
    [[nodiscard]] bool answer(std::uint32_t identifier, std::span<std::byte> reply) const
    {
        const auto& path = location_.url.path();
        if (path.size() > kMaximumReplyPath || kPathBegin + path.size() > reply.size())
            return fail(ENAMETOOLONG);
        put(reply, 0, static_cast<std::uint32_t>(kPathBegin + path.size()));
        put(reply, 4, identifier);
        put(reply, kPathReference, static_cast<std::int32_t>(kPathBegin - kPathReference));
        put(reply, kPathReference + 4, static_cast<std::uint32_t>(path.size()));
        std::memcpy(reply.data() + kPathBegin, path.data(), path.size());
        return true;
    }

    const FileDescriptor file_;
    const DocumentIdentifiers::Location location_;
    DocumentIdentifiers& identifiers_;
};

} // namespace

// The kernel's device numbers have 32 bits: 12 of the major number, 20 of the minor.
std::optional<std::uint32_t> CatalogStorage::deviceOf(const URL& url) const
{
    struct stat status = {};
    if (::stat(url.path().c_str(), &status) != 0)
        return std::nullopt;
    return static_cast<std::uint32_t>(status.st_dev);
}

bool CatalogStorage::isDriveDevice(std::uint32_t device) const
{
    const auto container = cloud_.defaultContainer();
    const auto own = container ? deviceOf(container->documentsURL) : std::nullopt;
    return own ? *own == device || fail(ENODEV) : fail(ENODEV);
}

std::uint64_t CatalogStorage::resolveDocumentIdentifier(std::uint64_t identifier, std::uint32_t device)
{
    if (!isDriveDevice(device))
        return 0;
    const bool fits = identifier != 0 && identifier <= std::numeric_limits<std::uint32_t>::max();
    const auto location = identifiers_.locate(fits ? static_cast<std::uint32_t>(identifier) : 0);
    errno = location ? ENOENT : EIO;
    return location && *location ? identifier : 0;
}

std::unique_ptr<OpenObject> CatalogStorage::openByIdentifier(const FileSystemIdentifier& system,
                                                             const ObjectIdentifier& object, std::uint32_t flags)
{
    errno = EINVAL;
    if (system.second != 0 || object.high != 0 || flags != kOpenWithoutFollowing || !isDriveDevice(system.device))
        return nullptr;
    const auto location = identifiers_.locate(object.low);
    errno = location ? ENOENT : EIO;
    if (!location || !*location)
        return nullptr;
    constexpr int kReading = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | O_NOFOLLOW;
    FileDescriptor file(::open((*location)->file.path().c_str(), kReading));
    if (!file.isOpen())
        return nullptr;
    return std::make_unique<OpenDocument>(std::move(file), **location, identifiers_);
}

} // namespace tessel
