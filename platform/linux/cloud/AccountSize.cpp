#include "platform/linux/cloud/AccountSize.h"

#include "platform/linux/files/AtomicFile.h"

#include <nlohmann/json.hpp>

namespace tessel {

namespace {

using nlohmann::json;

constexpr std::size_t kMaximumSize = 4096;
constexpr const char* kAccountSizeField = "accountSize";
constexpr const char* kUnlimited = "unlimited";

std::optional<AccountSize> parsedAccountSize(const std::string& content)
{
    const auto object = json::parse(content, nullptr, false);
    if (!object.is_object())
        return std::nullopt;
    const auto field = object.find(kAccountSizeField);
    if (field == object.end())
        return AccountSize();
    if (field->is_number_unsigned())
        return AccountSize{.bytes = field->get<std::uint64_t>()};
    return *field == kUnlimited ? std::optional(AccountSize{.isUnlimited = true}) : std::nullopt;
}

} // namespace

URL quotaFileIn(const URL& home)
{
    return home.appending("quota.json");
}

Result<AccountSize> readAccountSize(const URL& quotaFile)
{
    const auto content = readSmallFile(quotaFile, kMaximumSize);
    if (!content && content.error() == Error{Domain::General, ErrorCode::kNoSuchFile, {}, {}})
        return AccountSize();
    if (!content)
        return content.error();
    const auto size = parsedAccountSize(*content);
    return size ? Result(*size)
                : Result<AccountSize>(Error{Domain::General, ErrorCode::kReadCorrupt,
                                            "The account's size cannot be read from " + quotaFile.path(),
                                            "It is damaged"});
}

} // namespace tessel
