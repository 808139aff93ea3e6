#include "platform/linux/files/FileUserDefaults.h"

#include "platform/linux/files/FolderLock.h"
#include "platform/log/UnifiedLog.h"

#include <chrono>

namespace tessel {

namespace {

constexpr std::chrono::milliseconds kLockLimit(2000);

void applyChanges(const Value::Dictionary& changes, Value::Dictionary& values)
{
    for (const auto& [key, value] : changes) {
        if (value.isNone())
            values.erase(key);
        else
            values.insert_or_assign(key, value);
    }
}

} // namespace

Value FileUserDefaults::value(std::string_view key) const
{
    if (!values_)
        reload();
    const auto found = values_->find(std::string(key));
    return found == values_->end() ? Value() : found->second;
}

void FileUserDefaults::set(std::string_view key, Value value)
{
    // After one wait in vain the next changes do not hold up the user again.
    const auto limit = unsaved_.empty() ? kLockLimit : std::chrono::milliseconds::zero();
    const FolderLock lock(stored_.file().deletingLastPathComponent(), limit);
    unsaved_.insert_or_assign(std::string(key), std::move(value));
    reload();
    applyChanges(unsaved_, *values_);
    if (lock.isHeldElsewhere())
        log_.write(LogLevel::Error, "Another instance holds %@: a change is written with the next one", stored_.file());
    else if (!stored_.store(*values_))
        unsaved_.clear();
}

// What cannot be read now keeps the values that it had.
void FileUserDefaults::reload() const
{
    auto values = stored_.load();
    if (!values_ || stored_.isReadable())
        values_ = values ? *std::move(values) : Value::Dictionary();
}

} // namespace tessel
