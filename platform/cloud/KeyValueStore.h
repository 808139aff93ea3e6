#pragma once

#include "platform/base/Value.h"

#include <string_view>

namespace tessel {

/// Posted on the main thread after another device or program has changed the store.
inline constexpr const char* kKeyValueStoreChangedNotification = "KeyValueStoreDidChangeExternally";

/// Small values that all devices of one account share; this program only reads them. Main thread only.
class KeyValueStore {
public:
    virtual ~KeyValueStore() = default;

    /// The value, or none.
    [[nodiscard]] virtual Value value(std::string_view key) const = 0;
};

} // namespace tessel
