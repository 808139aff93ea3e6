#include "files/FileTags.h"
#include "platform/base/NotificationCenter.h"
#include "platform/cloud/KeyValueStore.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tessel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

constexpr const char* kStart = "+[FileTags _tagColorsDidChange] (*) ";
const std::string kEmpty = std::string("(TSD)[WARNING] ") + kStart + "Trovel tag dictionary is empty";

std::string dictionary(const std::string& version, const std::string& tags)
{
    return R"({"TrovelTagDict": {"TrovelTagDictVersion": )" + version + R"(, "TrovelTags": [)" + tags + "]}}";
}

class FileTagsTest : public testing::Test {
protected:
    URL store(const std::string& content) { return platform.drive.file("../home/keyvalue.json", content); }

    /// Lets the store see what has become of its file.
    bool awaitTags(const std::vector<std::string>& tags)
    {
        return platform.runUntil([&] {
            platform.turn(1);
            return FileTags::allTags() == tags;
        });
    }

    InstalledPlatform platform;
};

TEST_F(FileTagsTest, FollowTheStore)
{
    EXPECT_THAT(FileTags::allTags(), IsEmpty());
    EXPECT_THAT(FileTags::tagColorsByTag(), IsEmpty());
    EXPECT_THAT(platform.log->lines(), ElementsAre(kEmpty));

    store(dictionary("2.0", R"({"n": "Work", "l": 4.0}, {"n": "Red", "l": 6}, {"n": "Work", "l": 2}, {"l": 3}, 7,
                             {"n": "Nine", "l": 9}, {"n": "None"}, {"n": "Below", "l": -1})"));
    ASSERT_TRUE(awaitTags({"Work", "Red", "Work", "Nine", "None", "Below"}));
    const auto colors = FileTags::tagColorsByTag();
    EXPECT_THAT(colors, UnorderedElementsAre(Pair("Work", Color::systemGreen()), Pair("Red", Color::systemRed()),
                                             Pair("Nine", Color::gray(0.8)), Pair("None", Color::gray(0.8)),
                                             Pair("Below", Color::gray(0.8))));
    EXPECT_THAT(platform.log->lines(), ElementsAre(kEmpty));

    store(dictionary("3", R"({"n": "Work", "l": 4})"));
    ASSERT_TRUE(awaitTags({}));
    EXPECT_THAT(platform.log->lines(), ElementsAre(kEmpty,
                                                   std::string("(TSD)[DEBUG] ") + kStart +
                                                       "Trovel tag dictionary has incorrect version (3, should be 2)",
                                                   kEmpty));
    EXPECT_EQ(colors.size(), 5U) << "what a caller has is its own";
}

// The desktop writes the file in place, slowly: what is half there is no damage. What stays so is.
TEST_F(FileTagsTest, OnlyADamagedFileIsSetAside)
{
    const auto whole = dictionary("2", R"({"n": "Red", "l": 6})");
    const auto file = store(whole);
    ASSERT_THAT(FileTags::allTags(), ElementsAre("Red"));

    auto& queue = platform.services().mainQueue;
    store(whole.substr(0, 40));
    ASSERT_TRUE(platform.runUntil([&] { return queue.nextDue().has_value(); }));
    store(dictionary("2", R"({"n": "Blue", "l": 4})"));
    ASSERT_TRUE(awaitTags({"Blue"}));
    EXPECT_FALSE(std::filesystem::exists(file.path() + ".damaged-1"));

    store(whole.substr(0, 40));
    ASSERT_TRUE(awaitTags({}));
    EXPECT_EQ(platform.drive.read("../home/keyvalue.json.damaged-1"), whole.substr(0, 40));
    EXPECT_THAT(platform.log->lines(), Contains(HasSubstr("setting it aside")));
}

TEST_F(FileTagsTest, DrawsABlipInTheColorOfATag)
{
    store(dictionary("2", R"({"n": "Blue", "l": 4})"));
    const Size size = {14, 20};
    DisplayList dot;
    dot.setFillColor(Color::systemBlue());
    dot.fillOval({1, 5, 10, 10});
    const auto& blue = Color::systemBlue();
    const auto blip = FileTags::blipWithTag("Blue", size, 12, {0, 4});
    ASSERT_TRUE(blip);
    EXPECT_EQ(blip->size(), size);
    const auto& commands = blip->drawing()->commands();
    ASSERT_EQ(commands.size(), 5U);
    EXPECT_THAT(std::vector(commands.begin(), commands.begin() + 2), dot.commands());
    const auto* rim = std::get_if<DisplayList::SetStrokeColor>(&commands[2]);
    ASSERT_TRUE(rim);
    EXPECT_NEAR(rim->color.red, (1 + blue.red) / 2, 1e-6);
    EXPECT_EQ(rim->color.alpha, 1);
    EXPECT_EQ(commands[4], DisplayList::Command(DisplayList::StrokeOval{{1, 5, 10, 10}}));

    EXPECT_TRUE(FileTags::blipWithTag("Unknown", size, 12, {})->drawing()->commands().empty());
    EXPECT_FALSE(FileTags::blipWithTag(std::nullopt, size, 12, {}));
}

} // namespace
} // namespace tessel
