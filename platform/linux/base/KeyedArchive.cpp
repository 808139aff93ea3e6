#include "platform/base/KeyedArchive.h"

#include "platform/linux/base/Base64.h"
#include "platform/linux/base/UTF8.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <optional>

namespace tessel::keyedArchive {

namespace {

using Json = nlohmann::json;

constexpr std::size_t kMaximumSize = 16U << 20U; // bytes
constexpr int kMaximumDepth = 64;

// What JSON has no kind for is an object of one entry with one of these keys.
constexpr const char* kData = "$data";
constexpr const char* kDate = "$date";
constexpr const char* kURL = "$url";
constexpr const char* kURLBytes = "$urlBytes";
constexpr const char* kTextBytes = "$bytes";
constexpr const char* kSpecialNumber = "$number";

// In a dictionary's key, "$$" stands for a leading "$", and "$=" comes before the base64 of a key that is no UTF-8.
std::string encodedKey(const std::string& key)
{
    if (!isValidUTF8(key))
        return "$=" + base64Encoded(key);
    return key.starts_with('$') ? '$' + key : key;
}

std::optional<std::string> decodedKey(const std::string& key)
{
    if (!key.starts_with('$'))
        return key;
    if (key.starts_with("$="))
        return base64Decoded(std::string_view(key).substr(2));
    return key.starts_with("$$") ? std::optional(key.substr(1)) : std::nullopt;
}

struct Encoder {
    Json operator()(std::monostate) const { return nullptr; }
    Json operator()(bool flag) const { return flag; }
    Json operator()(std::int64_t number) const { return number; }
    Json operator()(double number) const
    {
        if (std::isfinite(number))
            return number;
        return {{kSpecialNumber, std::isnan(number) ? "nan" : number > 0 ? "inf" : "-inf"}};
    }
    Json operator()(const std::string& text) const
    {
        return isValidUTF8(text) ? Json(text) : Json{{kTextBytes, base64Encoded(text)}};
    }
    Json operator()(const Data& data) const { return {{kData, base64Encoded(data.bytes)}}; }
    Json operator()(const Date& date) const { return {{kDate, date.nanoseconds}}; }
    Json operator()(const URL& url) const
    {
        if (isValidUTF8(url.path()))
            return {{kURL, url.path()}};
        return {{kURLBytes, base64Encoded(url.path())}};
    }
    Json operator()(const Value::Array& array) const
    {
        auto json = Json::array();
        for (const auto& element : array)
            json.push_back(element.visit(*this));
        return json;
    }
    Json operator()(const Value::Dictionary& dictionary) const
    {
        auto json = Json::object();
        for (const auto& [key, value] : dictionary)
            json[encodedKey(key)] = value.visit(*this);
        return json;
    }
};

std::optional<Value> decodedNumber(const std::string& name)
{
    if (name == "nan")
        return Value(std::nan(""));
    if (name == "inf")
        return Value(HUGE_VAL);
    return name == "-inf" ? std::optional(Value(-HUGE_VAL)) : std::nullopt;
}

std::optional<Value> decodedSpecial(const std::string& key, const Json& content)
{
    if (key == kDate && content.is_number_integer())
        return Value(Date{content.get<std::int64_t>()});
    const auto* text = content.get_ptr<const std::string*>();
    if (!text)
        return std::nullopt;
    if (key == kURL)
        return Value(URL::file(*text));
    if (key == kSpecialNumber)
        return decodedNumber(*text);
    auto bytes = base64Decoded(*text);
    if (!bytes)
        return std::nullopt;
    if (key == kData)
        return Value(Data{std::move(*bytes)});
    if (key == kURLBytes)
        return Value(URL::file(*bytes));
    return key == kTextBytes ? std::optional(Value(std::move(*bytes))) : std::nullopt;
}

std::optional<Value> decoded(const Json&, int depth);

std::optional<Value> decodedArray(const Json& json, int depth)
{
    Value::Array array;
    array.reserve(json.size());
    for (const auto& element : json) {
        auto value = decoded(element, depth + 1);
        if (!value)
            return std::nullopt;
        array.push_back(std::move(*value));
    }
    return Value(std::move(array));
}

std::optional<Value> decodedObject(const Json& json, int depth)
{
    Value::Dictionary dictionary;
    for (const auto& [name, content] : json.items()) {
        auto key = decodedKey(name);
        if (!key)
            return json.size() == 1 ? decodedSpecial(name, content) : std::nullopt;
        auto value = decoded(content, depth + 1);
        if (!value)
            return std::nullopt;
        dictionary.emplace(std::move(*key), std::move(*value));
    }
    return Value(std::move(dictionary));
}

// @param depth how many lists and maps hold this one
std::optional<Value> decoded(const Json& json, int depth)
{
    if (json.is_null())
        return Value();
    if (const auto* flag = json.get_ptr<const bool*>())
        return Value(*flag);
    // Asked before the signed kind, which it is derived from: a number beyond 63 bits is none of ours.
    if (const auto* number = json.get_ptr<const std::uint64_t*>(); number && *number > INT64_MAX)
        return std::nullopt;
    if (json.is_number_integer())
        return Value(json.get<std::int64_t>());
    if (json.is_number_float())
        return Value(json.get<double>());
    if (const auto* text = json.get_ptr<const std::string*>())
        return Value(*text);
    // The parser has refused deeper ones already, but for special values, which may stand in the deepest list.
    if (json.is_array())
        return depth < kMaximumDepth ? decodedArray(json, depth) : std::nullopt;
    return depth <= kMaximumDepth ? decodedObject(json, depth) : std::nullopt;
}

// Builds nothing deeper than a special value in the deepest list, so that hostile text costs no stack.
std::optional<Json> parsed(std::string_view text)
{
    bool tooDeep = false;
    auto json = Json::parse(
        text,
        [&](int depth, Json::parse_event_t, const Json&) {
            tooDeep = tooDeep || depth > kMaximumDepth + 1;
            return !tooDeep;
        },
        /*allow_exceptions=*/false);
    return tooDeep || json.is_discarded() ? std::nullopt : std::optional(std::move(json));
}

} // namespace

std::string archived(const Value& value)
{
    return value.visit(Encoder()).dump();
}

Result<Value> unarchived(std::string_view text)
{
    const auto json = text.size() <= kMaximumSize ? parsed(text) : std::nullopt;
    auto value = json ? decoded(*json, 0) : std::nullopt;
    if (value)
        return std::move(*value);
    return Error{Domain::General, ErrorCode::kReadCorrupt, "The stored values cannot be read.", "They are damaged"};
}

} // namespace tessel::keyedArchive
