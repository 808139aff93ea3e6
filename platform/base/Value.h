#pragma once

#include "platform/base/Date.h"
#include "platform/base/URL.h"

#include <cstdint>
#include <map>
#include <string>
#include <variant>
#include <vector>

namespace tessel {

/// Raw bytes, kept apart from text.
struct Data {
    std::string bytes;

    friend bool operator==(const Data&, const Data&) = default;
};

/// What resource values, user defaults and archives hold: none, a flag, a number, text, bytes, a date, a URL, or a
/// list or map of such values.
class Value {
public:
    using Array = std::vector<Value>;
    using Dictionary = std::map<std::string, Value>;

    Value() = default;
    Value(bool flag) : content_(flag) {}
    Value(std::int64_t number) : content_(number) {}
    Value(double number) : content_(number) {}
    Value(std::string text) : content_(std::move(text)) {}
    Value(const char* text) : content_(std::string(text)) {}
    Value(Data data) : content_(std::move(data)) {}
    Value(Date date) : content_(date) {}
    Value(URL url) : content_(std::move(url)) {}
    Value(Array array) : content_(std::move(array)) {}
    Value(Dictionary dictionary) : content_(std::move(dictionary)) {}

    [[nodiscard]] bool isNone() const { return std::holds_alternative<std::monostate>(content_); }

    /// The content when it is a T, else null.
    template <typename T>
    [[nodiscard]] const T* get() const
    {
        return std::get_if<T>(&content_);
    }

    template <typename Visitor>
    decltype(auto) visit(Visitor&& visitor) const
    {
        return std::visit(std::forward<Visitor>(visitor), content_);
    }

    friend bool operator==(const Value&, const Value&) = default;

private:
    std::variant<std::monostate, bool, std::int64_t, double, std::string, Data, Date, URL, Array, Dictionary> content_;
};

} // namespace tessel
