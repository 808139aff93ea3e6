#pragma once

#include "platform/cloud/KeyValueStore.h"
#include "platform/linux/files/FolderMonitor.h"
#include "platform/linux/files/StoredDictionary.h"
#include "platform/run/MainQueue.h"

#include <memory>
#include <optional>

namespace tessel {

class NotificationCenter;

/// The file of a home's key-value store.
[[nodiscard]] URL keyValueFileIn(const URL& home);

/// A key-value store in one file, which whoever brings the values of other devices writes, in place or by replacing it.
/// It is read when it is first asked for, and again when it has changed and nobody has written to it for a moment. A
/// damaged one is set aside under another name, and the store is empty then.
class FileKeyValueStore final : public KeyValueStore {
public:
    /// The services outlive the store.
    FileKeyValueStore(URL file, MainQueue&, NotificationCenter&, UnifiedLog&);
    ~FileKeyValueStore() override;

    [[nodiscard]] Value value(std::string_view key) const override;

private:
    class Listener;

    void begin();
    void reloadSoon();
    void reload();
    void load();

    MainQueue& mainQueue_;
    NotificationCenter& notifications_;
    UnifiedLog& log_;
    const StoredDictionary stored_;
    std::optional<Value::Dictionary> values_; ///< none before the first use
    std::shared_ptr<Listener> listener_;
    std::unique_ptr<FolderMonitor> monitor_; ///< none before the first use
    MainQueue::DelayedTask reloading_;
};

} // namespace tessel
