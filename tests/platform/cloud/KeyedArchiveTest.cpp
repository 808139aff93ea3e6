#include "platform/base/KeyedArchive.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace tessel {

namespace {

using keyedArchive::archived;
using keyedArchive::unarchived;

Value roundTripped(const Value& value)
{
    const auto result = unarchived(archived(value));
    return result ? result.value() : Value("lost");
}

Value nested(int depth, Value inner)
{
    for (int i = 0; i < depth; ++i)
        inner = i % 2 == 0 ? Value(Value::Array{inner}) : Value(Value::Dictionary{{"key", inner}});
    return inner;
}

bool isCorrupt(std::string_view text)
{
    const auto result = unarchived(text);
    return !result && result.error() == Error{Domain::General, ErrorCode::kReadCorrupt, {}, {}};
}

} // namespace

// A key that looks like one of the archive's own, bytes that are no UTF-8 and numbers that JSON cannot write come back
// as they went in, with their kinds.
TEST(KeyedArchiveTest, GivesEveryKindOfValueBack)
{
    const std::string noUTF8 = "caf\xE9\xFF";
    const Value::Array values = {
        {},
        true,
        std::int64_t{1},
        std::numeric_limits<std::int64_t>::min(),
        std::numeric_limits<std::int64_t>::max(),
        1.0,
        0.1,
        -std::numeric_limits<double>::infinity(),
        "",
        "Grüße 🗂",
        std::string("a\0b", 3),
        noUTF8,
        Data{},
        Data{std::string("\0\x80\xFF~", 4)},
        Date{-1},
        URL::file("/a/b"),
        URL::file("/" + noUTF8),
        Value::Array{},
        Value::Dictionary{},
        Value::Dictionary{{"$data", "AAAA"}},
        Value::Dictionary{{"$date", std::int64_t{7}}},
        Value::Dictionary{{"$$", true}, {"$", 2.5}, {"$=", "x"}, {noUTF8, "y"}, {"", {}}},
    };
    for (const auto& value : values)
        EXPECT_EQ(roundTripped(value), value) << archived(value);
    EXPECT_EQ(roundTripped(values), Value(values));
    EXPECT_TRUE(std::isnan(*roundTripped(std::nan("")).get<double>()));
}

TEST(KeyedArchiveTest, RefusesWhatIsNoArchive)
{
    for (const std::string_view text : {"", "{", "nul", "[1,]", "\"\\ud800\"", "\"\xFF\"", R"({"$data":"A"})",
                                        R"({"$data":"AB=="})", R"({"$date":"x"})", R"({"$date":1.5})", R"({"$none":1})",
                                        R"({"$data":"","more":1})", R"({"$=!":1})", "18446744073709551615"})
        EXPECT_TRUE(isCorrupt(text)) << text;
    EXPECT_TRUE(isCorrupt('"' + std::string(16U << 20U, 'a') + '"'));
}

TEST(KeyedArchiveTest, IsNestedAtMost64Deep)
{
    const auto deepest = nested(64, Data{"leaf"});
    EXPECT_EQ(roundTripped(deepest), deepest);
    EXPECT_TRUE(isCorrupt(archived(nested(65, Data{"leaf"}))));
    EXPECT_TRUE(isCorrupt(archived(nested(65, Value::Dictionary()))));
    EXPECT_TRUE(isCorrupt(std::string(4'000'000, '[')));
    EXPECT_TRUE(isCorrupt(std::string(1'000'000, '[') + std::string(1'000'000, ']')));
}

} // namespace tessel
