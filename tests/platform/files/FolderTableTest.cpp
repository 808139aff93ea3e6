#include "platform/files/FolderTable.h"

#include "platform/linux/text/EmbeddedStringTables.h"
#include "platform/linux/text/IcuTextServices.h"

#include <gmock/gmock.h>

#include <chrono>
#include <map>
#include <random>

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

FolderEntry sized(std::int64_t size)
{
    return {.size = size};
}

class FolderTableTest : public testing::Test {
protected:
    FolderTable table(const std::vector<std::string>& names) const
    {
        FolderTable result;
        for (const auto& name : names)
            result.append(name, sized(1));
        result.arrange(text.orderOfNames(result.names()));
        return result;
    }

    static std::vector<std::string> namesOf(const FolderTable& table)
    {
        std::vector<std::string> result;
        for (const auto name : table.names())
            result.emplace_back(name);
        return result;
    }

    // What a shell does with row changes; it must arrive at the new rows.
    static std::vector<std::string> followed(std::vector<std::string> rows, const RowChanges& changes,
                                             const FolderTable& now)
    {
        for (auto index = changes.removed.rbegin(); index != changes.removed.rend(); ++index)
            rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(*index));
        for (const auto index : changes.inserted)
            rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(index), std::string(now.name(index)));
        return rows;
    }

    IcuTextServices text = IcuTextServices("en_GB", embeddedStringTables());
};

TEST_F(FolderTableTest, AppliesChangesAndTellsTheRowsOfBothStates)
{
    auto rows = table({"a", "c", "File 2", "File 10"});
    rows.setSelected(1, true);

    const auto changes = rows.apply({{"c", sized(7)},
                                     {"File 10", std::nullopt},
                                     {"b", sized(2)},
                                     {"never there", std::nullopt},
                                     {"File 2", sized(1)},
                                     {"z", sized(1)},
                                     {"z", sized(9)}},
                                    text);

    EXPECT_THAT(namesOf(rows), ElementsAre("a", "b", "c", "File 2", "z"));
    EXPECT_THAT(changes.removed, ElementsAre(3));
    EXPECT_THAT(changes.inserted, ElementsAre(1, 4));
    EXPECT_THAT(changes.updated, ElementsAre(2));
    EXPECT_EQ(rows.entry(2).size, 7);
    EXPECT_EQ(rows.entry(4).size, 9) << "the last of two changes of one name counts";
    EXPECT_TRUE(rows.isSelected(2));
    EXPECT_EQ(rows.find("File 2", text), 3U);
    EXPECT_EQ(rows.find("file 2", text), std::nullopt);
}

// Batches on both sides of the border between moving rows and merging them, with names that come, go and come again
// so often that the arena must be compacted, against the simplest list there is.
TEST_F(FolderTableTest, StaysEqualToASimpleListThroughRandomChanges)
{
    std::mt19937 random(7);
    std::map<std::string, std::int64_t> expected;
    FolderTable rows;
    for (int round = 0; round < 200; ++round) {
        const auto before = namesOf(rows);
        std::vector<FolderChange> changes;
        for (auto count = random() % 30; count > 0; --count) {
            const auto name = "Item " + std::to_string(random() % 100) + std::string(random() % 2 * 300, 'x');
            const bool goes = random() % 2 == 0;
            const auto size = static_cast<std::int64_t>(random() % 3);
            changes.push_back({name, goes ? std::nullopt : std::optional(sized(size))});
            goes ? void(expected.erase(name)) : void(expected[name] = size);
        }
        const auto told = rows.apply(changes, text);

        std::vector<std::string> sorted;
        for (const auto& [name, size] : expected)
            sorted.push_back(name);
        std::sort(sorted.begin(), sorted.end(),
                  [&](const auto& left, const auto& right) { return text.compareNames(left, right) < 0; });
        ASSERT_EQ(namesOf(rows), sorted);
        ASSERT_EQ(followed(before, told, rows), sorted);
        for (std::size_t index = 0; index < rows.size(); ++index)
            ASSERT_EQ(rows.entry(index).size, expected.at(std::string(rows.name(index))));
    }
}

TEST_F(FolderTableTest, TellsADifferenceRowByRowAndAnUpheavalAsAReset)
{
    auto rows = table({"a", "b", "c"});
    rows.setSelected(0, true);
    rows.setSelected(2, true);
    const auto changes = rows.replaceWith(table({"b", "bb", "c", "d"}), text);
    EXPECT_THAT(changes.removed, ElementsAre(0));
    EXPECT_THAT(changes.inserted, ElementsAre(1, 3));
    EXPECT_THAT(changes.updated, IsEmpty());
    EXPECT_TRUE(rows.isSelected(2));

    std::vector<std::string> even, odd{"c"};
    for (int number = 0; number < 20000; number += 2) {
        even.push_back("Item " + std::to_string(number));
        odd.push_back("Item " + std::to_string(number + 1));
    }
    EXPECT_FALSE(rows.replaceWith(table(even), text).reset) << "many new rows behind the old ones cost nothing";
    EXPECT_TRUE(rows.replaceWith(table(odd), text).reset);
    EXPECT_FALSE(rows.isSelected(0)) << "its item was gone in between";
}

TEST_F(FolderTableTest, ChangesOneOfAHundredThousandInLessThanAMillisecond)
{
    std::vector<std::string> names;
    for (int number = 0; number < 100'000; ++number)
        names.push_back("Item " + std::to_string(number));
    auto rows = table(names);
    auto fastest = std::chrono::nanoseconds::max();
    for (int round = 0; round < 20; ++round) {
        const auto start = std::chrono::steady_clock::now();
        const auto changes = rows.apply({{"Item 50000", round % 2 ? std::optional(sized(1)) : std::nullopt}}, text);
        fastest = std::min<std::chrono::nanoseconds>(fastest, std::chrono::steady_clock::now() - start);
        ASSERT_FALSE(changes.empty());
    }
    EXPECT_LT(fastest, std::chrono::milliseconds(1));
}

} // namespace
} // namespace tessel
