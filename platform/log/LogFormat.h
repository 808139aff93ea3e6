#pragma once

#include "platform/base/Describe.h"

#include <concepts>
#include <string_view>
#include <type_traits>

namespace tessel {

/// Text that was written in the program itself: it tells nothing about the user, so no log hides it.
class StaticText {
public:
    consteval StaticText(const char* text) : text_(text) {}

    [[nodiscard]] constexpr std::string_view view() const { return text_; }

private:
    std::string_view text_;
};

inline std::string describe(StaticText text)
{
    return std::string(text.view());
}

/// One step of a format: literal text, then a placeholder, or the end.
struct LogFormatStep {
    std::string_view literal;
    /// "%s", "%d", "%u", "%lf", "%@", "%{public}@", "%%" for a percent sign; "%" for one that means nothing; empty at
    /// the end.
    std::string_view placeholder;
    std::string_view rest;
};

constexpr LogFormatStep nextLogFormatStep(std::string_view format)
{
    constexpr std::string_view kPlaceholders[] = {"%s", "%d", "%u", "%lf", "%@", "%{public}@", "%%"};
    const auto percent = format.find('%');
    if (percent == std::string_view::npos)
        return {format, {}, {}};
    for (const auto placeholder : kPlaceholders)
        if (format.substr(percent).starts_with(placeholder))
            return {format.substr(0, percent), placeholder, format.substr(percent + placeholder.size())};
    return {format.substr(0, percent), "%", format.substr(percent + 1)};
}

/// Whether a placeholder may show an argument of this type.
template <typename Type>
constexpr bool fitsLogPlaceholder(std::string_view placeholder)
{
    if (placeholder == "%s")
        return std::same_as<Type, StaticText> || std::convertible_to<Type, std::string_view>;
    if (placeholder == "%d" || placeholder == "%u")
        return std::integral<Type>;
    if (placeholder == "%lf")
        return std::floating_point<Type>;
    return (placeholder == "%@" || placeholder == "%{public}@") && Describable<Type>;
}

/// Whether a format has a placeholder for each of these arguments, in this order, and no others.
template <typename... Arguments>
constexpr bool fitsLogFormat(std::string_view format)
{
    const auto nextPlaceholder = [&format] {
        LogFormatStep step;
        do {
            step = nextLogFormatStep(format);
            format = step.rest;
        } while (step.placeholder == "%%");
        return step.placeholder;
    };
    return (fitsLogPlaceholder<std::decay_t<Arguments>>(nextPlaceholder()) && ...) && nextPlaceholder().empty();
}

/// A format literal, checked against the types of its arguments when the program is compiled.
template <typename... Arguments>
class LogFormat {
public:
    consteval LogFormat(const char* format) : format_(format)
    {
        if (!fitsLogFormat<Arguments...>(format_))
            throw "the placeholders of this log format do not fit its arguments";
    }

    [[nodiscard]] constexpr std::string_view view() const { return format_; }

private:
    std::string_view format_;
};

} // namespace tessel
