#include "platform/linux/text/Formatters.h"

#include <cmath>

namespace tessel {

namespace {

icu::DateFormat* opened(DateStyle style, const icu::Locale& locale)
{
    using icu::DateFormat;
    switch (style) {
    case DateStyle::None:
        return DateFormat::createTimeInstance(DateFormat::kShort, locale);
    case DateStyle::Short:
        return DateFormat::createDateTimeInstance(DateFormat::kShort, DateFormat::kShort, locale);
    case DateStyle::Medium:
        return DateFormat::createDateTimeInstance(DateFormat::kMedium, DateFormat::kShort, locale);
    case DateStyle::Long:
        return DateFormat::createDateTimeInstance(DateFormat::kLong, DateFormat::kShort, locale);
    }
    return nullptr;
}

} // namespace

std::string DateTexts::text(Date date, DateStyle style) const
{
    const auto milliseconds = std::floor(static_cast<double>(date.nanoseconds) / 1e6);
    const std::lock_guard lock(mutex_);
    std::string text;
    if (auto* format = formatter(style)) {
        icu::UnicodeString formatted;
        format->format(milliseconds, formatted).toUTF8String(text);
    }
    return text;
}

icu::DateFormat* DateTexts::formatter(DateStyle style) const
{
    auto& formatter = formatters_[static_cast<std::size_t>(style)];
    if (!formatter)
        formatter.reset(opened(style, icu::Locale(locale_.c_str())));
    return formatter.get();
}

} // namespace tessel
