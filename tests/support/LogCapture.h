#pragma once

#include "platform/log/UnifiedLog.h"

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// Keeps the lines of a log, private arguments shown, for a test to compare. Safe to read while threads log.
class LogCapture final : public LogSink {
public:
    LogCapture() { showsPrivateArguments = true; }

    void write(const Date&, LogLevel, std::string_view line) override
    {
        const std::lock_guard lock(mutex_);
        lines_.push_back(withoutLineNumber(line));
    }

    /// What was logged, each line with "(*)" for its line number: "(TSD)[INFO] main (*) Running /usr/bin/tesseldrive".
    [[nodiscard]] std::vector<std::string> lines() const
    {
        const std::lock_guard lock(mutex_);
        return lines_;
    }

    void clear()
    {
        const std::lock_guard lock(mutex_);
        lines_.clear();
    }

private:
    static std::string withoutLineNumber(std::string_view line)
    {
        for (auto open = line.find(" ("); open != std::string_view::npos; open = line.find(" (", open + 1)) {
            const auto close = line.find_first_not_of("0123456789", open + 2);
            if (close > open + 2 && line.substr(0, close + 2).ends_with(") "))
                return std::string(line.substr(0, open)).append(" (*").append(line.substr(close));
        }
        return std::string(line);
    }

    mutable std::mutex mutex_;
    std::vector<std::string> lines_;
};

} // namespace tessel
