#include "platform/linux/cloud/Placeholder.h"
#include "tests/support/TemporaryDrive.h"

#include <gmock/gmock.h>

#include <iomanip>
#include <sstream>

namespace tessel {
namespace {

PlaceholderRecord recordNamed(std::string name)
{
    return {std::move(name), 12, Date{-5}, Date{7}, "public.plain-text", "id-1", "owner"};
}

// The longest name that a file may have, one in an old encoding, and one that would break out of its quotes.
TEST(PlaceholderTest, KeepsTheRecordOfAnyName)
{
    TemporaryDrive drive;
    for (const auto& name :
         {std::string(255, 'n'), std::string("caf\xE9"), std::string("\"},\\\n"), std::string(".x")}) {
        const auto url = drive.url(name);
        ASSERT_EQ(writePlaceholder(url, recordNamed(name)), std::nullopt);
        EXPECT_TRUE(isPlaceholderName(placeholderURL(url).lastPathComponent()));
        const auto record = readPlaceholder(placeholderURL(url));
        ASSERT_TRUE(record) << record.error().description;
        EXPECT_EQ(*record, recordNamed(name));
    }
}

TEST(PlaceholderTest, RefusesADamagedRecord)
{
    TemporaryDrive drive;
    const auto whole = std::string(R"({"name":"a.txt","size":1,"modificationDate":2,"type":"t","identifier":"i"})");
    const auto placeholder = placeholderURL(drive.url("a.txt"));
    const auto name = std::string(placeholder.lastPathComponent());
    drive.file(name, whole);
    ASSERT_TRUE(readPlaceholder(placeholder));

    const auto with = [&](std::string_view part, std::string_view other) {
        auto text = whole;
        return text.replace(text.find(part), part.size(), other);
    };
    const std::string damages[] = {
        "",
        "[]",
        whole.substr(0, 30),
        std::string(60'000, '['),
        with("\"size\":1,", ""),
        with("\"size\":1", "\"size\":-1"),
        with("\"size\":1", "\"size\":18446744073709551615"),
        with("\"size\":1", "\"size\":1.5"),
        with("Date\":2", "Date\":9223372036854775808"),
        with("\"t\"", "7"),
        with("\"i\"", "\"i\",\"sharedRole\":\"king\""),
        with("\"i\"", "\"i\",\"creationDate\":\"today\""),
        with("a.txt", "b.txt"),
        with("\"name\":\"a.txt\"", "\"nameBase64\":\"YS50eHR=\""),
    };
    for (const auto& damage : damages) {
        drive.file(name, damage);
        const auto record = readPlaceholder(placeholder);
        EXPECT_EQ(record ? 0 : record.error().code, ErrorCode::kReadCorrupt) << damage.substr(0, 100);
    }
    drive.file(name, whole + std::string(65 * 1024, ' '));
    EXPECT_FALSE(readPlaceholder(placeholder));
}

// FNV-1a, written anew: names that no URL ends in have their placeholders' names from nowhere else.
std::string placeholderNameFor(std::string_view name)
{
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (const char character : name)
        hash = (hash ^ static_cast<unsigned char>(character)) * 0x100000001b3U;
    std::ostringstream text;
    text << ".tsd-" << std::hex << std::setw(16) << std::setfill('0') << hash << ".cloud";
    return text.str();
}

// Each of these lies where its name says, and would lead out of its folder or to no file at all.
TEST(PlaceholderTest, RefusesNamesThatNoFileHas)
{
    TemporaryDrive drive;
    const auto url = drive.url("x");
    ASSERT_EQ(placeholderURL(url), drive.url(placeholderNameFor("x")));
    for (const auto& name : {std::string("../x"), std::string(".."), std::string(), std::string("a\0b", 3)}) {
        ASSERT_EQ(writePlaceholder(url, recordNamed(name)), std::nullopt);
        const auto content = drive.read(placeholderURL(url).lastPathComponent());
        EXPECT_FALSE(readPlaceholder(drive.file(placeholderNameFor(name), content))) << name;
    }
}

TEST(PlaceholderTest, TellsPlaceholdersByTheirNames)
{
    EXPECT_TRUE(isPlaceholderName(".tsd-0123456789abcdef.cloud"));
    for (const auto* name : {"", ".tsd-.cloud", ".tsd-0123456789abcdeg.cloud", ".tsd-0123456789ABCDEF.cloud",
                             ".tsd-0123456789abcdef.cloud2", "xtsd-0123456789abcdef.cloud"})
        EXPECT_FALSE(isPlaceholderName(name)) << name;
}

} // namespace
} // namespace tessel
