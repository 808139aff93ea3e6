#include "platform/linux/files/StoredDictionary.h"

#include "platform/base/KeyedArchive.h"
#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/files/AtomicFile.h"
#include "platform/linux/files/SetAside.h"
#include "platform/log/UnifiedLog.h"

#include <cerrno>

namespace tessel {

namespace {

constexpr std::size_t kMaximumSize = 1U << 20U; // bytes

Result<Value::Dictionary> unarchivedDictionary(std::string_view text)
{
    auto value = keyedArchive::unarchived(text);
    if (!value)
        return value.error();
    if (const auto* dictionary = value->get<Value::Dictionary>())
        return *dictionary;
    return Error{Domain::General, ErrorCode::kReadCorrupt, "The stored values cannot be read.", "They are damaged"};
}

// Damaged, too long or no regular file; anything else (no rights, no descriptors, a failing disk) may pass.
bool isUseless(const Error& error)
{
    return error == Error{Domain::General, ErrorCode::kReadCorrupt, {}, {}} ||
           (error.domain == Domain::System && (error.code == EFBIG || error.code == EINVAL));
}

} // namespace

std::optional<Value::Dictionary> StoredDictionary::load() const
{
    const auto text = readSmallFile(file_, kMaximumSize);
    unreadable_.reset();
    if (!text && text.error() == Error{Domain::General, ErrorCode::kNoSuchFile, {}, {}})
        return std::nullopt;
    const auto dictionary = text ? unarchivedDictionary(*text) : text.error();
    if (dictionary)
        return *dictionary;
    keepOrSetAside(dictionary.error());
    return std::nullopt;
}

std::optional<Error> StoredDictionary::store(const Value::Dictionary& dictionary) const
{
    return store(dictionary, writeFileAtomically);
}

std::optional<Error> StoredDictionary::keep(const Value::Dictionary& dictionary) const
{
    return store(dictionary, writeFileAtomicallyWithoutSync);
}

std::optional<Error> StoredDictionary::store(const Value::Dictionary& dictionary, Write write) const
{
    if (unreadable_)
        return unreadable_;
    const auto text = keyedArchive::archived(dictionary);
    if (const auto stored = readSmallFile(file_, kMaximumSize); stored && *stored == text)
        return std::nullopt;
    auto error = text.size() > kMaximumSize ? errnoError(EFBIG, file_) : write(file_, text);
    if (error)
        log_.write(LogLevel::Error, "Cannot write %@: %@", file_, error);
    return error;
}

void StoredDictionary::keepOrSetAside(const Error& reason) const
{
    if (!isUseless(reason)) {
        unreadable_ = reason;
        log_.write(LogLevel::Error, "Cannot read %@, leaving it as it is: %@", file_, reason);
        return;
    }
    log_.write(LogLevel::Error, "Cannot read %@, setting it aside: %@", file_, reason);
    if (const auto error = setAside(file_))
        log_.write(LogLevel::Error, "Cannot set %@ aside: %@", file_, error);
}

} // namespace tessel
