#include "platform/base/Describe.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdio>

namespace tessel {

namespace {

struct ValueDescriber {
    std::string operator()(std::monostate) const { return "(null)"; }
    std::string operator()(const Data& data) const { return std::to_string(data.bytes.size()) + " bytes"; }
    std::string operator()(const Value::Dictionary& dictionary) const
    {
        std::string text = "{";
        for (const auto& [key, value] : dictionary) {
            if (text.size() > 1)
                text += ", ";
            text += key + " = " + describe(value);
        }
        return text + "}";
    }
    template <typename T>
    std::string operator()(const T& content) const
    {
        return describe(content);
    }
};

} // namespace

std::string describe(const URL& url)
{
    return url.absoluteString();
}

std::string describe(const Date& date)
{
    using namespace std::chrono;
    const auto time = floor<seconds>(sys_time<nanoseconds>(nanoseconds(date.nanoseconds)));
    const auto day = floor<days>(time);
    const year_month_day calendar(day);
    const hh_mm_ss clock(time - day);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u %02d:%02d:%02d +0000", static_cast<int>(calendar.year()),
                  static_cast<unsigned>(calendar.month()), static_cast<unsigned>(calendar.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return text;
}

std::string describe(const Error& error)
{
    constexpr std::array kDomains = {"General", "System", "Cloud"};
    const std::string domain = kDomains.at(static_cast<std::size_t>(error.domain));
    return "Error " + domain + " " + std::to_string(error.code) + " \"" + error.description + "\"";
}

std::string describe(const Value& value)
{
    return value.visit(ValueDescriber());
}

} // namespace tessel
