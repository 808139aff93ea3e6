#pragma once

#include "platform/base/Platform.h"
#include "platform/log/UnifiedLog.h"

/// Names the function, as its log lines show it; a block names itself again. The first statement of what logs.
#define TSD_FUNCTION(name) [[maybe_unused]] static constexpr ::tessel::StaticText tsdFunction(name)

#define TSD_LOG_LINE(level, tag, format, ...)                                                                          \
    do {                                                                                                               \
        auto& tsdLog = ::tessel::platform::installed().log;                                                            \
        if (tsdLog.isEnabled(::tessel::logType(level)))                                                                \
            tsdLog.write(level, "(TSD)[" tag "] %s (%d) " format, tsdFunction, __LINE__ __VA_OPT__(, ) __VA_ARGS__);   \
    } while (false)

/// One diagnostic line each. The format is a literal; its arguments are evaluated only when the line is wanted.
#define TSD_DEBUG(format, ...) TSD_LOG_LINE(::tessel::LogLevel::Debug, "DEBUG", format, __VA_ARGS__)
#define TSD_INFO(format, ...) TSD_LOG_LINE(::tessel::LogLevel::Info, "INFO", format, __VA_ARGS__)
#define TSD_WARNING(format, ...) TSD_LOG_LINE(::tessel::LogLevel::Warning, "WARNING", format, __VA_ARGS__)
#define TSD_ERROR(format, ...) TSD_LOG_LINE(::tessel::LogLevel::Error, "ERROR", format, __VA_ARGS__)

/// Announces what the user just did: labels the activity and logs the same text.
#define TSD_USER_ACTION(text)                                                                                          \
    do {                                                                                                               \
        ::tessel::platform::installed().log.setActivityLabel(text);                                                    \
        TSD_INFO("================= %s", ::tessel::StaticText(text));                                                  \
    } while (false)
