#include "platform/log/UnifiedLog.h"

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

/// How many bytes the control character at the start of the text has; none when there is another character. U+0080 to
/// U+009F count, because terminals obey these as well.
constexpr std::size_t controlCharacterLength(std::string_view text)
{
    const auto byte = [text](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    if (byte(0) < 0x20 || byte(0) == 0x7f)
        return 1;
    return text.size() > 1 && byte(0) == 0xc2 && (byte(1) & 0xe0U) == 0x80 ? 2 : 0;
}

void appendHexadecimal(std::string& line, char character)
{
    constexpr std::string_view kDigits = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(character);
    line += {'\\', 'x', kDigits[byte >> 4U], kDigits[byte & 15U]};
}

void appendEscaped(std::string& line, std::string_view text)
{
    while (!text.empty()) {
        const auto controls = controlCharacterLength(text);
        if (text.front() == '\n')
            line += "\\n";
        else if (controls == 0)
            line += text.front();
        else
            for (const char character : text.substr(0, controls))
                appendHexadecimal(line, character);
        text.remove_prefix(controls == 0 ? 1 : controls);
    }
}

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
                appendEscaped(line, argument->text);
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
