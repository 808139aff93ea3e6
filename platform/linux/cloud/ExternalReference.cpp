#include "platform/linux/cloud/ExternalReference.h"

#include "platform/linux/base/UserText.h"
#include "platform/linux/files/AtomicFile.h"

#include <nlohmann/json.hpp>

#include <limits>

namespace tessel {

namespace {

using nlohmann::json;

constexpr std::size_t kMaximumSize = 64 * 1024;
constexpr std::string_view kExtension = "tesselref";
constexpr const char* kIdentifierField = "documentIdentifier";
constexpr const char* kPathField = "path";

std::optional<std::uint32_t> identifierIn(const json& field)
{
    if (!field.is_number_unsigned())
        return std::nullopt;
    const auto number = field.get<std::uint64_t>();
    if (number == 0 || number > std::numeric_limits<std::uint32_t>::max())
        return std::nullopt;
    return static_cast<std::uint32_t>(number);
}

// A field that is there must be sound: half a reference might stand for another document than was meant.
std::optional<ExternalReference> parsedReference(const std::string& content)
{
    const auto object = json::parse(content, nullptr, false);
    if (!object.is_object())
        return std::nullopt;
    ExternalReference reference;
    const auto identifier = object.find(kIdentifierField);
    if (identifier != object.end() && !(reference.documentIdentifier = identifierIn(*identifier)))
        return std::nullopt;
    if (const auto path = object.find(kPathField); path != object.end()) {
        if (!path->is_string())
            return std::nullopt;
        reference.path = path->get<std::string>();
    }
    return reference.documentIdentifier || reference.path ? std::optional(std::move(reference)) : std::nullopt;
}

} // namespace

bool isExternalReferenceName(const URL& url)
{
    return url.pathExtension() == kExtension;
}

Result<ExternalReference> readExternalReference(const URL& url)
{
    const auto content = readSmallFile(url, kMaximumSize);
    if (!content)
        return content.error();
    auto reference = parsedReference(*content);
    return reference ? Result(*std::move(reference)) : Result<ExternalReference>(damagedReferenceError(url));
}

std::string externalReferenceContent(const ExternalReference& reference)
{
    auto object = json::object();
    if (reference.documentIdentifier)
        object[kIdentifierField] = *reference.documentIdentifier;
    if (reference.path)
        object[kPathField] = *reference.path;
    return object.dump() + '\n';
}

Error damagedReferenceError(const URL& url)
{
    return {Domain::General, ErrorCode::kReadCorrupt,
            userText("“%1$@” does not lead to a document.", {userTextName(url.lastPathComponent())}),
            userText("The reference is damaged")};
}

} // namespace tessel
