#include "platform/documents/DetailsStore.h"

#include <gmock/gmock.h>

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

ItemDetails count(std::uint32_t items)
{
    return {.itemCount = items, .packageSize = {}, .tags = {}};
}

// The worker has read a folder, another program changes it, and only then the answer arrives.
TEST(DetailsStoreTest, FetchesAgainWhatChangedWhileItWasUnderWay)
{
    DetailsStore store;
    store.reset(3);
    EXPECT_THAT(store.take(0, 3, 2), ElementsAre(0, 1));
    store.makeStale(0, "a");
    EXPECT_THAT(store.take(0, 1, 1), ElementsAre(0));
    EXPECT_TRUE(store.set(0, "a", count(1))); // may be older than the change: shown, and asked for again
    EXPECT_THAT(store.take(0, 1, 1), ElementsAre(0));
    EXPECT_TRUE(store.set(0, "a", count(2)));
    EXPECT_FALSE(store.set(1, "b", {}));
    EXPECT_THAT(store.take(0, 2, 2), IsEmpty());

    EXPECT_THAT(store.take(0, 3, 9), ElementsAre(2));
    store.makeAllStale([](std::size_t) { return "c"; });
    EXPECT_EQ(store.find("a")->itemCount, 2U);
    EXPECT_THAT(store.take(0, 3, 9), ElementsAre(0, 1, 2));
    EXPECT_TRUE(store.set(2, "c", count(7)));
    EXPECT_THAT(store.take(0, 3, 9), ElementsAre(2));
}

TEST(DetailsStoreTest, KeepsInStepWithTheList)
{
    DetailsStore store;
    store.reset(5);
    for (const auto index : store.take(1, 4, 9))
        store.set(index, "", {}); // 1, 2 and 3 are known
    store.follow({.removed = {0, 2}, .inserted = {1, 4}, .updated = {}});
    EXPECT_THAT(store.take(0, 9, 9), ElementsAre(1, 3, 4)); // known 1, new, known 3, unknown 4, new
    store.giveBack();
    EXPECT_THAT(store.take(2, 9, 1), ElementsAre(3));
}

} // namespace
} // namespace tessel
