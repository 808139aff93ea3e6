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

void UnifiedLog::writeLine(LogLevel level, std::string_view format, std::span<const Argument> arguments)
{
    const auto now = clock_.now();
    std::optional<std::string> redacted;
    std::optional<std::string> complete;
    const std::lock_guard lock(mutex_);
    for (const auto& sink : sinks_) {
        if (level < sink->minimumLevel)
            continue;
        auto& line = sink->showsPrivateArguments ? complete : redacted;
        if (!line)
            line = formatted(format, arguments, sink->showsPrivateArguments);
        sink->write(now, level, *line);
    }
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
                line += escapingControlCharacters(argument->text);
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
