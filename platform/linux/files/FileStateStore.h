#pragma once

#include "platform/linux/files/StoredDictionary.h"
#include "platform/ui/StateCoder.h"

namespace tessel {

/// Restored state in one file. Of two programs that share it the later one to save wins.
class FileStateStore final : public StateStore {
public:
    FileStateStore(URL file, UnifiedLog& log) : stored_(std::move(file), log) {}

    [[nodiscard]] std::optional<Value::Dictionary> load() override { return stored_.load(); }
    void save(const Value::Dictionary& state) override { stored_.store(state); }
    void keep(const Value::Dictionary& state) override { stored_.keep(state); }

private:
    const StoredDictionary stored_;
};

} // namespace tessel
