#pragma once

#include "platform/base/Date.h"
#include "platform/base/Error.h"
#include "platform/base/URL.h"
#include "platform/base/Value.h"

#include <concepts>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace tessel {

/// One-line texts for the log. A type becomes loggable by a `describe` beside its declaration, or by a member
/// `description()`.
std::string describe(const URL&);
std::string describe(const Date&); ///< ISO 8601, UTC, seconds: "2026-11-22 18:05:00 +0000".
std::string describe(const Error&);
std::string describe(const Value&);
inline std::string describe(std::string_view text)
{
    return std::string(text);
}
inline std::string describe(const std::string& text)
{
    return text;
}
inline std::string describe(const char* text)
{
    return text;
}
inline std::string describe(double number)
{
    return std::to_string(number);
}
template <std::integral T>
std::string describe(T number)
{
    if constexpr (std::same_as<T, bool>)
        return number ? "YES" : "NO";
    else
        return std::to_string(number);
}
template <typename T>
requires requires(const T& object)
{
    {
        object.description()
        } -> std::convertible_to<std::string>;
}
std::string describe(const T& object)
{
    return object.description();
}

template <typename T>
std::string describe(const std::optional<T>&);
template <typename T>
std::string describe(const std::shared_ptr<T>&);

/// "(a, b)"; "()" when empty.
template <typename T>
std::string describe(const std::vector<T>& list)
{
    std::string text = "(";
    for (const auto& element : list) {
        if (text.size() > 1)
            text += ", ";
        text += describe(element);
    }
    return text + ")";
}

/// The content, or "(null)".
template <typename T>
std::string describe(const std::optional<T>& value)
{
    return value ? describe(*value) : "(null)";
}

template <typename T>
std::string describe(const std::shared_ptr<T>& object)
{
    return object ? describe(*object) : "(null)";
}

template <typename T>
concept Describable = requires(const T& value)
{
    {
        describe(value)
        } -> std::convertible_to<std::string>;
};

} // namespace tessel
