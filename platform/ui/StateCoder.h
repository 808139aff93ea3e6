#pragma once

#include "platform/base/Value.h"

#include <optional>
#include <string_view>

namespace tessel {

/// Named values of one controller's state, written when the program resigns and read at the next start.
class StateCoder {
public:
    StateCoder() = default;
    explicit StateCoder(Value::Dictionary values) : values_(std::move(values)) {}

    void encode(std::string_view key, Value value) { values_.insert_or_assign(std::string(key), std::move(value)); }
    /// None for a key that was not encoded.
    [[nodiscard]] Value decode(std::string_view key) const
    {
        const auto found = values_.find(std::string(key));
        return found == values_.end() ? Value() : found->second;
    }

    [[nodiscard]] const Value::Dictionary& values() const { return values_; }

private:
    Value::Dictionary values_;
};

/// A root controller that has more to come back to than its restorable state: where the user was.
class SessionKeeper {
public:
    virtual ~SessionKeeper() = default;

    virtual void encodeSession(StateCoder&) const = 0;
    /// Called before the restorable state is decoded.
    virtual void decodeSession(const StateCoder&) = 0;
};

/// Where restored state is kept between two runs, by restoration identifier. Main thread only.
class StateStore {
public:
    virtual ~StateStore() = default;

    /// None at the first start, and when what was kept cannot be read; it is then set aside under another name.
    [[nodiscard]] virtual std::optional<Value::Dictionary> load() = 0;
    /// On disk, whole, when the call returns; a failure is logged and leaves the last state.
    virtual void save(const Value::Dictionary&) = 0;
    /// Whole when the call returns, and kept if the program ends then, but not yet if the machine does: costs no wait.
    virtual void keep(const Value::Dictionary&) = 0;
};

} // namespace tessel
