#include "platform/log/UnifiedLog.h"

#include "platform/base/ControlCharacters.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tessel {

namespace {

constexpr std::array<std::pair<std::string_view, LogLevel>, 4> kLevels = {{
    {"debug", LogLevel::Debug},
    {"info", LogLevel::Info},
    {"warning", LogLevel::Warning},
    {"error", LogLevel::Error},
}};

} // namespace

std::optional<LogLevel> logLevelNamed(std::string_view name)
{
    for (const auto& [levelName, level] : kLevels)
        if (levelName == name)
            return level;
    return std::nullopt;
}

void UnifiedLog::addSink(std::shared_ptr<LogSink> sink)
{
    const std::lock_guard lock(mutex_);
    sinks_.push_back(std::move(sink));
    updateEnabledTypes();
}

void UnifiedLog::removeSink(const std::shared_ptr<LogSink>& sink)
{
    const std::lock_guard lock(mutex_);
    std::erase(sinks_, sink);
    updateEnabledTypes();
}

/// Describing takes place outside the lock: it may take long.
void UnifiedLog::writeLine(LogLevel level, std::string_view format, std::span<const Argument> arguments)
{
    std::array<bool, 2> wanted = {};
    {
        const std::lock_guard lock(mutex_);
        for (const auto& sink : sinks_)
            if (level >= sink->minimumLevel)
                wanted[sink->showsPrivateArguments ? 1 : 0] = true;
    }
    std::array<std::optional<std::string>, 2> lines;
    for (const bool showsPrivate : {false, true})
        if (wanted[showsPrivate ? 1 : 0])
            lines[showsPrivate ? 1 : 0] = formatted(format, arguments, showsPrivate);
    const auto now = clock_.now();
    const std::lock_guard lock(mutex_);
    for (const auto& sink : sinks_)
        if (const auto& line = lines[sink->showsPrivateArguments ? 1 : 0]; line && level >= sink->minimumLevel)
            sink->write(now, level, *line);
}

std::string UnifiedLog::formatted(std::string_view format, std::span<const Argument> arguments, bool showsPrivate)
{
    std::string line;
    auto argument = arguments.begin();
    while (!format.empty()) {
        const auto step = nextLogFormatStep(format);
        format = step.rest;
        line += step.literal;
        if (step.placeholder == "%%") {
            line += '%';
        } else if (!step.placeholder.empty()) {
            if (showsPrivate || argument->isPublic || step.placeholder == "%{public}@")
                line += escapingControlCharacters(argument->describe(argument->value));
            else
                line += "<private>";
            ++argument;
        }
    }
    return line;
}

void UnifiedLog::updateEnabledTypes()
{
    std::uint32_t types = 0;
    for (const auto& sink : sinks_)
        for (const auto& [name, level] : kLevels)
            if (level >= sink->minimumLevel)
                types |= 1U << static_cast<unsigned>(logType(level));
    enabledTypes_ = types;
}

} // namespace tessel
