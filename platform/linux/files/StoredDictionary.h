#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"
#include "platform/base/Value.h"

#include <optional>
#include <string_view>

namespace tessel {

class UnifiedLog;

/// A dictionary kept in a file that survives a kill at any moment: what is read is always a whole former content.
class StoredDictionary {
public:
    StoredDictionary(URL file, UnifiedLog& log) : file_(std::move(file)), log_(log) {}

    /// None when nothing was stored yet. A file that is damaged, longer than 1 MiB or no regular file is set aside (see
    /// setAside) and logged, and none is answered. One that cannot be read for another reason may be sound: it stays,
    /// is logged, and none is answered.
    [[nodiscard]] std::optional<Value::Dictionary> load() const;
    /// False after a load that failed though the file may be sound, until one succeeds.
    [[nodiscard]] bool isReadable() const { return !unreadable_; }

    /// On disk when it returns without an error; after one the former content is there. Logged as well. What is stored
    /// already is not written again, and a file that is not readable is not written over.
    std::optional<Error> store(const Value::Dictionary&) const;
    /// The same, but not on disk yet: costs no wait, and survives the end of the program, not that of the machine.
    std::optional<Error> keep(const Value::Dictionary&) const;

    [[nodiscard]] const URL& file() const { return file_; }

private:
    using Write = std::optional<Error> (*)(const URL&, std::string_view);

    std::optional<Error> store(const Value::Dictionary&, Write) const;
    void keepOrSetAside(const Error& reason) const;

    const URL file_;
    UnifiedLog& log_;
    mutable std::optional<Error> unreadable_; // why the last load failed
};

} // namespace tessel
