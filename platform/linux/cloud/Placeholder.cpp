#include "platform/linux/cloud/Placeholder.h"

#include "platform/files/ResourceValues.h"
#include "platform/linux/base/Base64.h"
#include "platform/linux/base/UTF8.h"
#include "platform/linux/base/UserText.h"
#include "platform/linux/files/AtomicFile.h"

#include <nlohmann/json.hpp>

#include <cinttypes>
#include <cstdio>
#include <limits>

namespace tessel {

namespace {

using nlohmann::json;

constexpr std::size_t kMaximumSize = 64 * 1024;
constexpr std::string_view kPrefix = ".tsd-";
constexpr std::string_view kSuffix = ".cloud";
constexpr std::size_t kHashDigits = 16;

// FNV-1a (Fowler, Noll and Vo).
std::uint64_t hashOf(std::string_view name)
{
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (const char character : name)
        hash = (hash ^ static_cast<unsigned char>(character)) * 0x100000001b3U;
    return hash;
}

std::string placeholderName(std::string_view name)
{
    char digits[kHashDigits + 1];
    std::snprintf(digits, sizeof digits, "%016" PRIx64, hashOf(name));
    return std::string(kPrefix) + digits + std::string(kSuffix);
}

std::string serialised(const json& value)
{
    return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

// Reads the fields of an object and remembers whether one of them was damaged.
class FieldReader {
public:
    explicit FieldReader(const json& object) : object_(object) {}

    [[nodiscard]] bool isDamaged() const { return damaged_; }
    [[nodiscard]] bool has(const char* key) const { return object_.contains(key); }

    std::string text(const char* key)
    {
        const auto* field = find(key);
        return check(field && field->is_string()) ? field->get<std::string>() : std::string();
    }

    std::int64_t integer(const char* key)
    {
        constexpr std::uint64_t kMaximum = std::numeric_limits<std::int64_t>::max();
        const auto* field = find(key);
        const bool isInteger = field && field->is_number_integer();
        const bool fits = isInteger && !(field->is_number_unsigned() && field->get<std::uint64_t>() > kMaximum);
        return check(fits) ? field->get<std::int64_t>() : 0;
    }

    std::uint64_t size(const char* key)
    {
        const auto number = integer(key);
        return check(number >= 0) ? static_cast<std::uint64_t>(number) : 0;
    }

    Date date(const char* key) { return Date{integer(key)}; }

    std::string name(const char* key, const char* base64Key)
    {
        if (has(key))
            return text(key);
        const auto decoded = base64Decoded(text(base64Key));
        return check(decoded.has_value()) ? *decoded : std::string();
    }

    bool check(bool isSound)
    {
        damaged_ = damaged_ || !isSound;
        return isSound;
    }

private:
    const json* find(const char* key) const
    {
        const auto field = object_.find(key);
        return field == object_.end() ? nullptr : &*field;
    }

    const json& object_;
    bool damaged_ = false;
};

bool isFileName(std::string_view name)
{
    constexpr std::string_view kForbidden("/\0", 2);
    return !name.empty() && name != "." && name != ".." && name.find_first_of(kForbidden) == std::string_view::npos;
}

bool isRole(std::string_view role)
{
    return role == SharedItemRole::kOwner || role == SharedItemRole::kParticipant;
}

constexpr const char* kName = "name";
constexpr const char* kNameBase64 = "nameBase64";
// The name that the document is being given: it is the document's once the placeholder has been renamed to fit it.
constexpr const char* kNextName = "nextName";
constexpr const char* kNextNameBase64 = "nextNameBase64";

std::string nameFor(std::string_view fileName, FieldReader& fields)
{
    if (fields.has(kNextName) || fields.has(kNextNameBase64))
        if (auto next = fields.name(kNextName, kNextNameBase64); placeholderName(next) == fileName)
            return next;
    return fields.name(kName, kNameBase64);
}

void setName(json& object, std::string_view name, const char* key, const char* base64Key)
{
    if (isValidUTF8(name))
        object[key] = name;
    else
        object[base64Key] = base64Encoded(name);
}

std::optional<PlaceholderRecord> parsedRecord(const std::string& content, std::string_view fileName)
{
    const auto object = json::parse(content, nullptr, false);
    if (!object.is_object())
        return std::nullopt;
    FieldReader fields(object);
    PlaceholderRecord record;
    record.name = nameFor(fileName, fields);
    fields.check(isFileName(record.name));
    record.size = fields.size("size");
    if (fields.has("creationDate"))
        record.creationDate = fields.date("creationDate");
    record.modificationDate = fields.date("modificationDate");
    record.type = fields.text("type");
    record.identifier = fields.text("identifier");
    if (fields.has("sharedRole"))
        record.sharedRole = fields.text("sharedRole");
    fields.check(!record.sharedRole || isRole(*record.sharedRole));
    return fields.isDamaged() ? std::nullopt : std::optional(std::move(record));
}

} // namespace

URL placeholderURL(const URL& logical)
{
    return logical.deletingLastPathComponent().appending(placeholderName(logical.lastPathComponent()));
}

bool isPlaceholderName(std::string_view name)
{
    if (name.size() != kPrefix.size() + kHashDigits + kSuffix.size() || !name.starts_with(kPrefix) ||
        !name.ends_with(kSuffix))
        return false;
    const auto digits = name.substr(kPrefix.size(), kHashDigits);
    return digits.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

Result<PlaceholderRecord> readPlaceholder(const URL& placeholder)
{
    const auto content = readSmallFile(placeholder, kMaximumSize);
    if (!content)
        return content.error();
    auto record = parsedRecord(*content, placeholder.lastPathComponent());
    if (!record || placeholderName(record->name) != placeholder.lastPathComponent())
        return Error{Domain::General, ErrorCode::kReadCorrupt,
                     "The record of the document behind “" + std::string(placeholder.lastPathComponent()) +
                         "” is damaged.",
                     userText("The record is damaged")};
    return *std::move(record);
}

std::string placeholderContent(const PlaceholderRecord& record, std::optional<std::string_view> nextName)
{
    json object = {{"size", record.size},
                   {"modificationDate", record.modificationDate.nanoseconds},
                   {"type", record.type},
                   {"identifier", record.identifier}};
    setName(object, record.name, kName, kNameBase64);
    if (nextName)
        setName(object, *nextName, kNextName, kNextNameBase64);
    if (record.creationDate)
        object["creationDate"] = record.creationDate->nanoseconds;
    if (record.sharedRole)
        object["sharedRole"] = *record.sharedRole;
    return serialised(object);
}

std::optional<Error> writePlaceholder(const URL& logical, const PlaceholderRecord& record)
{
    return writeFileAtomically(placeholderURL(logical), placeholderContent(record));
}

} // namespace tessel
