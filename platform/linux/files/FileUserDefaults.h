#pragma once

#include "platform/cloud/UserDefaults.h"
#include "platform/linux/files/StoredDictionary.h"

namespace tessel {

/// User defaults in one file, read when they are first asked for. Two programs may share the file: a change is made to
/// what the file then holds, so that neither undoes the other's; a key keeps its value while only this one reads.
class FileUserDefaults final : public UserDefaults {
public:
    FileUserDefaults(URL file, UnifiedLog& log) : log_(log), stored_(std::move(file), log) {}

    [[nodiscard]] Value value(std::string_view key) const override;
    /// Keeps the change in memory when it cannot be written, or another instance holds the file for two seconds, and
    /// writes it with the next one.
    void set(std::string_view key, Value) override;

private:
    void reload() const;

    UnifiedLog& log_;
    const StoredDictionary stored_;
    mutable std::optional<Value::Dictionary> values_; // none before the first use
    Value::Dictionary unsaved_; // changes that could not be written yet; a none value removes its key
};

} // namespace tessel
