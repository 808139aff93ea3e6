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

inline std::string describe(const StaticText& text)
{
    return std::string(text.view());
}

/// One step of a format: literal text, then a placeholder, or the end.
struct LogFormatStep {
    std::string_view literal;
    std::string_view
        placeholder; ///< "%s", "%d", "%u", "%lf", "%@", "%{public}@"; "%%" for a percent sign; empty at the end
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

/// A format literal, checked against the types of its arguments when the program is compiled.
template <typename... Arguments>
class LogFormat {
public:
    consteval LogFormat(const char* format) : format_(format)
    {
        std::string_view rest = format_;
        ((rest = consume<Arguments>(rest)), ...);
        if (!nextArgumentStep(rest).placeholder.empty())
            throw "the log format has more placeholders than arguments";
    }

    [[nodiscard]] constexpr std::string_view view() const { return format_; }

private:
    static constexpr LogFormatStep nextArgumentStep(std::string_view rest)
    {
        auto step = nextLogFormatStep(rest);
        while (step.placeholder == "%%")
            step = nextLogFormatStep(step.rest);
        return step;
    }

    template <typename Argument>
    static consteval std::string_view consume(std::string_view rest)
    {
        using Type = std::decay_t<Argument>;
        const auto step = nextArgumentStep(rest);
        if (step.placeholder.empty())
            throw "the log format has fewer placeholders than arguments";
        if (!accepts<Type>(step.placeholder))
            throw "a log format's placeholder does not fit its argument";
        return step.rest;
    }

    template <typename Type>
    static consteval bool accepts(std::string_view placeholder)
    {
        if (placeholder == "%s")
            return std::same_as<Type, StaticText> || std::convertible_to<Type, std::string_view>;
        if (placeholder == "%d" || placeholder == "%u")
            return std::integral<Type>;
        if (placeholder == "%lf")
            return std::floating_point<Type>;
        return (placeholder == "%@" || placeholder == "%{public}@") && Describable<Type>;
    }

    std::string_view format_;
};

} // namespace tessel
