#include "app/common/TesselDriveApp_StrataAdditions.h"

#include "app/common/Log.h"
#include "platform/cloud/CloudService.h"
#include "platform/files/GenerationalStorage.h"
#include "platform/files/ResourceValues.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <limits>
#include <mutex>
#include <system_error>

namespace tessel {

namespace {

std::string errorText(int errorNumber)
{
    return std::generic_category().message(errorNumber);
}

// Leading digits; a number beyond 64 bits counts as the largest, which no document has.
std::optional<std::uint64_t> leadingNumber(const std::string& text)
{
    std::uint64_t number = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
    if (parsed.ec == std::errc::invalid_argument)
        return std::nullopt;
    return parsed.ec == std::errc() ? number : std::numeric_limits<std::uint64_t>::max();
}

// Of the volume that holds the default container. Found once; after a failure the next call tries again.
std::optional<std::uint32_t> driveDevice()
{
    static std::mutex mutex;
    static std::optional<std::uint32_t> device;
    const std::lock_guard lock(mutex);
    const auto& services = platform::installed();
    if (device)
        return device;
    errno = ENOENT;
    if (const auto container = services.cloud.defaultContainer())
        device = services.storage.deviceOf(container->documentsURL);
    return device;
}

// A reply to a query for document identifier and path, read with nothing in it trusted.
class ReplyReader {
public:
    explicit ReplyReader(const AttributeReply& reply) : reply_(reply) {}

    /// Whether the reply is long enough to have all its numbers.
    [[nodiscard]] bool hasNumbers() const { return length() >= kPathBegin && length() <= reply_.size(); }
    [[nodiscard]] std::uint32_t documentIdentifier() const { return at<std::uint32_t>(4); }

    /// None unless it lies in the reply, behind the numbers, and is absolute.
    [[nodiscard]] std::optional<URL> path() const
    {
        const auto begin = std::int64_t{kReference} + at<std::int32_t>(kReference);
        const std::int64_t size = at<std::uint32_t>(kReference + 4);
        if (begin < kPathBegin || size == 0 || begin + size > length())
            return std::nullopt;
        const std::string path(reinterpret_cast<const char*>(reply_.data()) + begin, static_cast<std::size_t>(size));
        const bool isSound = path.starts_with('/') && path.find('\0') == std::string::npos;
        return isSound ? std::optional(URL::file(path)) : std::nullopt;
    }

private:
    static constexpr std::uint32_t kReference = 8;
    static constexpr std::uint32_t kPathBegin = 16;

    [[nodiscard]] std::uint32_t length() const { return at<std::uint32_t>(0); }

    template <typename Number>
    [[nodiscard]] Number at(std::size_t offset) const
    {
        Number number = 0;
        std::memcpy(&number, reply_.data() + offset, sizeof number);
        return number;
    }

    const AttributeReply& reply_;
};

std::unique_ptr<OpenObject> openbyid(std::uint32_t device, std::uint64_t fileIdentifier)
{
    TSD_FUNCTION("openbyid");
    const ObjectIdentifier object{static_cast<std::uint32_t>(fileIdentifier), 0};
    auto opened = platform::installed().storage.openByIdentifier({device, 0}, object, kOpenWithoutFollowing);
    const int errorNumber = errno;
    if (!opened)
        TSD_ERROR("openbyid failed: %d (%{public}@)", errorNumber, errorText(errorNumber));
    return opened;
}

std::optional<URL> URLWithDocumentIDCheck(const OpenObject& object, std::uint64_t documentID)
{
    TSD_FUNCTION("URLWithDocumentIDCheck");
    AttributeReply buffer{};
    constexpr auto kWanted = CommonAttributes::kDocumentIdentifier | CommonAttributes::kFullPath;
    constexpr auto kOptions =
        AttributeQueryOptions::kWithoutFollowing | AttributeQueryOptions::kExtendedCommonAttributes;
    if (!object.queryAttributes(kWanted, kOptions, buffer)) {
        const int errorNumber = errno;
        TSD_ERROR("attribute query failed: %d (%{public}@)", errorNumber, errorText(errorNumber));
        return std::nullopt;
    }
    const ReplyReader reply(buffer);
    if (reply.hasNumbers() && reply.documentIdentifier() != documentID) {
        TSD_ERROR("document IDs didn't match (%d v/s %@)", reply.documentIdentifier(), documentID);
        return std::nullopt;
    }
    auto url = reply.hasNumbers() ? reply.path() : std::nullopt;
    if (!url)
        TSD_ERROR("attribute query gave no path for document ID %@", documentID);
    return url;
}

std::optional<URL> urlWithDocumentID(std::uint64_t documentID)
{
    TSD_FUNCTION("+[URL(TesselDriveApp_StrataAdditions) tsd_URLFromDocumentID:]");
    const auto device = driveDevice();
    if (!device) {
        const int errorNumber = errno;
        TSD_ERROR("no device for the default container: %d (%{public}@)", errorNumber, errorText(errorNumber));
        return std::nullopt;
    }
    const auto fileIdentifier = platform::installed().storage.resolveDocumentIdentifier(documentID, *device);
    if (fileIdentifier == 0) {
        const int errorNumber = errno;
        TSD_ERROR("resolving the document ID failed: %d (%{public}@)", errorNumber, errorText(errorNumber));
        return std::nullopt;
    }
    const auto object = openbyid(*device, fileIdentifier);
    return object ? URLWithDocumentIDCheck(*object, documentID) : std::nullopt;
}

std::optional<std::int64_t> documentIdentifier(const URL& url, ValueVariant variant)
{
    constexpr ResourceKey kKey[] = {ResourceKey::DocumentIdentifier};
    const auto values = platform::installed().resources.values(kKey, url, variant);
    if (!values || values->empty())
        return std::nullopt;
    const auto* number = values->begin()->second.get<std::int64_t>();
    return number ? std::optional(*number) : std::nullopt;
}

} // namespace

std::optional<URL> tsd_URLFromDocumentID(const std::optional<std::string>& documentID)
{
    TSD_FUNCTION("+[URL(TesselDriveApp_StrataAdditions) tsd_URLFromDocumentID:]");
    if (!documentID) {
        TSD_ERROR("tsd_URLFromDocumentID: missing document ID");
        return std::nullopt;
    }
    const auto number = leadingNumber(*documentID);
    if (!number) {
        TSD_ERROR("tsd_URLFromDocumentID: no number: %@", *documentID);
        return std::nullopt;
    }
    return urlWithDocumentID(*number);
}

std::int64_t tsd_DocumentID(const URL& url)
{
    platform::installed().log.write(LogLevel::Info, "%@", StaticText("URL"));
    if (const auto promised = documentIdentifier(url, ValueVariant::Promised))
        return *promised;
    return documentIdentifier(url, ValueVariant::Plain).value_or(0);
}

} // namespace tessel
