#pragma once

#include "platform/log/UnifiedLog.h"

#include <iosfwd>

namespace tessel {

/// Bare lines to a stream that outlives the sink: standard error, or a file the user named. Each is flushed, so that
/// the last line before a crash is seen.
class StreamSink final : public LogSink {
public:
    explicit StreamSink(std::ostream& stream) : stream_(stream) {}

    void write(const Date&, LogLevel, std::string_view line) override;

private:
    std::ostream& stream_;
};

} // namespace tessel
