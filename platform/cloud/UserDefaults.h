#pragma once

#include "platform/base/Value.h"

#include <string_view>

namespace tessel {

/// The program's small persisted settings. Main thread only. A change is on disk when the call returns, whole or not at
/// all; a file that cannot be read is set aside under another name and an empty one begun.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    /// The value, or none.
    [[nodiscard]] virtual Value value(std::string_view key) const = 0;
    /// Stores a value; a none value removes the key. A failure is logged, and the value holds until the program ends.
    virtual void set(std::string_view key, Value) = 0;
};

} // namespace tessel
