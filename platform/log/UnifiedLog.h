#pragma once

#include "platform/log/LogFormat.h"
#include "platform/run/Clock.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// The types by which the log is switched on and off.
enum class LogType : std::uint8_t { Default = 0, Debug = 2, Error = 16 };

/// The levels that a line shows. Two of them share a type.
enum class LogLevel : std::uint8_t { Debug, Info, Warning, Error };

constexpr LogType logType(LogLevel level)
{
    if (level == LogLevel::Debug)
        return LogType::Debug;
    return level == LogLevel::Error ? LogType::Error : LogType::Default;
}

/// The level that a command line or a console names: "debug", "info", "warning" or "error".
[[nodiscard]] std::optional<LogLevel> logLevelNamed(std::string_view);

/// Where lines go. Called under the log's lock, from any thread; it must not log.
class LogSink {
public:
    virtual ~LogSink() = default;

    /// @param line one line without its end; control characters are escaped
    virtual void write(const Date&, LogLevel, std::string_view line) = 0;

    /// What the sink takes; both are set before it is added to a log.
    LogLevel minimumLevel = LogLevel::Debug;
    bool showsPrivateArguments = false;
};

/// The log of the whole program. Without a sink for its type a line costs one load; its arguments are not evaluated.
/// Safe to use from any thread; sinks are added and removed on the main thread.
class UnifiedLog {
public:
    explicit UnifiedLog(const Clock& clock) : clock_(clock) {}

    [[nodiscard]] bool isEnabled(LogType type) const
    {
        return (enabledTypes_.load(std::memory_order_relaxed) >> static_cast<unsigned>(type)) & 1U;
    }

    /// Writes one line to every sink that takes its level. Control characters of the arguments are escaped, so that a
    /// file's name can neither break a line nor forge one. An argument is shown if it is a number, StaticText or under
    /// "%{public}@"; else only sinks that show private arguments do, and others have "<private>" in its place.
    template <typename... Arguments>
    void write(LogLevel level, LogFormat<std::type_identity_t<Arguments>...> format, const Arguments&... arguments)
    {
        const Argument erased[] = {Argument{&arguments, &describeArgument<Arguments>, isPublic<Arguments>}...};
        writeLine(level, format.view(), erased);
    }

    void addSink(std::shared_ptr<LogSink>);
    void removeSink(const std::shared_ptr<LogSink>&);

    /// Labels what the user is doing now, for whoever traces the program: shown by `activityLabel` until the next one.
    /// Main thread only.
    void setActivityLabel(StaticText label) { activityLabel_ = label.view(); }
    [[nodiscard]] std::string_view activityLabel() const { return activityLabel_; }

private:
    /// A value that is described where a line shows it: there may be a hundred thousand URLs that none does.
    struct Argument {
        const void* value;
        std::string (*describe)(const void*);
        bool isPublic; ///< whatever the placeholder says
    };

    template <typename Type>
    static constexpr bool isPublic =
        std::same_as<std::decay_t<Type>, StaticText> || std::is_arithmetic_v<std::decay_t<Type>>;

    template <typename Type>
    static std::string describeArgument(const void* value)
    {
        const auto& argument = *static_cast<const Type*>(value);
        if constexpr (std::convertible_to<Type, std::string_view>)
            return std::string(std::string_view(argument));
        else
            return describe(argument);
    }

    void writeLine(LogLevel, std::string_view format, std::span<const Argument>);
    static std::string formatted(std::string_view format, std::span<const Argument>, bool showsPrivate);
    void updateEnabledTypes();

    const Clock& clock_;
    std::atomic<std::uint32_t> enabledTypes_ = 0;
    std::mutex mutex_;
    std::vector<std::shared_ptr<LogSink>> sinks_;
    std::string_view activityLabel_;
};

} // namespace tessel
