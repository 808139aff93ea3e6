#include "platform/linux/files/FileUserDefaults.h"

#include "platform/linux/files/FolderLock.h"

namespace tessel {

namespace {

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
        values_ = stored_.load().value_or(Value::Dictionary());
    const auto found = values_->find(std::string(key));
    return found == values_->end() ? Value() : found->second;
}

void FileUserDefaults::set(std::string_view key, Value value)
{
    const FolderLock lock(stored_.file().deletingLastPathComponent());
    unsaved_.insert_or_assign(std::string(key), std::move(value));
    values_ = stored_.load().value_or(Value::Dictionary());
    applyChanges(unsaved_, *values_);
    if (!stored_.store(*values_))
        unsaved_.clear();
}

} // namespace tessel
