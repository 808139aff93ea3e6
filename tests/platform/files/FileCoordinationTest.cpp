#include "platform/linux/cloud/DocumentStore.h"
#include "platform/linux/coordination/LinuxFileCoordination.h"
#include "platform/linux/files/UnfinishedWork.h"
#include "tests/support/InstalledPlatform.h"
#include "tests/support/OtherProcess.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <future>
#include <stdexcept>
#include <thread>

namespace tessel {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::HasSubstr;
using testing::Values;

void fail(const std::optional<Error>& error)
{
    if (error)
        throw std::runtime_error(error->description);
}

// Within 30 seconds.
bool comesTrue(const std::function<bool()>& condition)
{
    const auto deadline = std::chrono::steady_clock::now() + 30s;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::yield();
    }
    return true;
}

class FileCoordinationTest : public testing::Test {
protected:
    struct Wish {
        const char* path;
        bool writes;
    };

    [[nodiscard]] LinuxFileCoordination coordination(Clock::Ticks limit) const
    {
        const auto services = platform::installed();
        return {
            {realClock, services.mainQueue, services.log, services.text, services.files, documents, services.progress},
            folder,
            limit};
    }

    std::optional<Error> access(
        LinuxFileCoordination& coordination, const Wish& wish, const std::function<void()>& work = [] {}) const
    {
        const auto url = platform.drive.url(wish.path);
        if (!wish.writes)
            return coordination.read(url, nullptr, nullptr, work);
        const WriteIntent intents[] = {{url, WritingOptions::None}};
        return coordination.write(intents, nullptr, work);
    }

    // A process that has what it wishes until it is met for a second time.
    [[nodiscard]] std::function<void(OtherProcess&)> holding(const Wish& wish) const
    {
        return [this, wish](OtherProcess& self) {
            auto theirs = coordination(10s);
            fail(access(theirs, wish, [&] {
                self.meet();
                self.meet();
            }));
        };
    }

    InstalledPlatform platform;
    const SystemClock realClock{};
    const URL folder = platform.drive.url("coordination");
    const UnfinishedWork unfinished{platform.drive.url("unfinished")};
    const DocumentStore documents{platform.drive.url("cloud"), platform::installed().text, platform::installed().types,
                                  unfinished};
};

struct Pair {
    const char* theirs;
    bool theyWrite;
    const char* ours;
    bool weWrite;
    bool isPossible;
};

class ExclusionTest : public FileCoordinationTest, public testing::WithParamInterface<Pair> {};

// The rule is one, whether two threads or two processes meet.
TEST_P(ExclusionTest, KeepsWritersAwayFromAllThatIsInAnItem)
{
    const auto& pair = GetParam();
    const Wish theirs{pair.theirs, pair.theyWrite};
    const Wish ours{pair.ours, pair.weWrite};
    auto coordinator = coordination(0s);
    OtherProcess other(holding(theirs));
    other.meet();
    const auto error = access(coordinator, ours);
    EXPECT_EQ(!error, pair.isPossible);
    other.meet();
    EXPECT_TRUE(other.finish());
    EXPECT_EQ(access(coordinator, ours), std::nullopt);

    fail(access(coordinator, theirs,
                [&] { std::thread([&] { EXPECT_EQ(!access(coordinator, ours), pair.isPossible); }).join(); }));
}

INSTANTIATE_TEST_SUITE_P(Pairs, ExclusionTest,
                         Values(Pair{"A/b", true, "A/b", true, false}, Pair{"A/b", false, "A/b", true, false},
                                Pair{"A/b", true, "A/b", false, false}, Pair{"A/b", false, "A/b", false, true},
                                Pair{"A", true, "A/b/c", false, false}, Pair{"A", false, "A/b/c", true, false},
                                Pair{"A/b/c", true, "A", false, false}, Pair{"A/b/c", false, "A", true, false},
                                Pair{"A/b", true, "A/c", true, true}, Pair{"A", false, "A/b", false, true},
                                Pair{"A/b", true, "A/bc", true, true}, Pair{"A/b", true, "A/c", false, true}));

TEST_F(FileCoordinationTest, SaysWhoHasAnItemAndTakesItFromTheDead)
{
    auto coordinator = coordination(0s);
    OtherProcess other(holding({"Projects", true}));
    other.meet();
    const auto error = access(coordinator, {"Projects/Plan.txt", true});
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code, ErrorCode::kLocked);
    EXPECT_THAT(error->description, AllOf(HasSubstr("“Projects” is in use by tests_platform"),
                                          HasSubstr("(process " + std::to_string(other.identifier()) + ")")));
    other.kill();
    EXPECT_EQ(access(coordinator, {"Projects/Plan.txt", true}), std::nullopt);
}

// Each has what the other one wants. Both must come back, with what they had untouched.
TEST_F(FileCoordinationTest, NeverHangsWhenTwoWantWhatTheOtherHas)
{
    OtherProcess other([&](OtherProcess& self) {
        auto theirs = coordination(20ms);
        fail(access(theirs, {"A", true}, [&] {
            self.meet();
            if (!access(theirs, {"B", true}))
                throw std::logic_error("both have B");
            self.meet();
        }));
    });
    auto ours = coordination(20ms);
    std::optional<Error> inner;
    EXPECT_EQ(access(ours, {"B", true},
                     [&] {
                         other.meet();
                         inner = access(ours, {"A", true});
                         other.meet();
                     }),
              std::nullopt);
    EXPECT_EQ(inner->code, ErrorCode::kLocked);
    EXPECT_TRUE(other.finish());
}

// While a writer waits for a reader, no reader who comes later goes ahead of it: a busy folder would else never be
// written.
TEST_F(FileCoordinationTest, LetsNoProcessOvertakeAWriterWhoWaits)
{
    auto impatient = coordination(0s);
    OtherProcess reader(holding({"A", false}));
    reader.meet();
    OtherProcess writer([&](OtherProcess&) {
        auto patient = coordination(30s);
        fail(access(patient, {"A/b", true}));
    });
    // Once is not enough: for a moment a writer who looks whether it can go on is in everybody's way.
    const auto isRefused = [&](int) { return access(impatient, {"A/b", false}).has_value(); };
    constexpr int kTimes[50] = {};
    ASSERT_TRUE(comesTrue([&] { return std::ranges::all_of(kTimes, isRefused); })) << "no reader is kept back";
    EXPECT_EQ(access(impatient, {"A/c", false}), std::nullopt) << "which the writer does not want";
    EXPECT_EQ(access(impatient, {"B", true}), std::nullopt) << "which nobody wants";
    reader.meet();
    EXPECT_TRUE(writer.finish());
    EXPECT_EQ(access(impatient, {"A/b", false}), std::nullopt);
}

// Who waits for two items has neither. Else we, who have the one and go on to the other, would wait for each other.
TEST_F(FileCoordinationTest, HoldsNothingWhileItWaits)
{
    auto ours = coordination(0s);
    fail(access(ours, {"A", true}, [&] {
        OtherProcess other([&](OtherProcess&) {
            const WriteIntent both[] = {{platform.drive.url("A"), WritingOptions::ForMoving},
                                        {platform.drive.url("B"), WritingOptions::ForReplacing}};
            fail(coordination(30s).write(both, nullptr, [] {}));
        });
        const auto isInLine = [&] {
            return std::async(std::launch::async, [&] { return access(ours, {"B", true}).has_value(); }).get();
        };
        EXPECT_TRUE(comesTrue(isInLine));
        EXPECT_TRUE(comesTrue([&] { return !access(ours, {"B", true}); }));
    }));
}

TEST_F(FileCoordinationTest, GivesThreadsTheirTurnsInTheOrderOfAsking)
{
    AccessTable table(realClock);
    const auto isFree = [&](const char* path, bool writes) {
        return std::async(std::launch::async, [&] { return table.enter({{path, writes}}, 0s).has_value(); }).get();
    };
    std::future<std::optional<AccessTable::Turn>> writer; // ends after the reader whom it waits for
    auto reader = table.enter({{"/A", false}}, 0s);
    ASSERT_TRUE(reader);
    writer = std::async(std::launch::async, [&] { return table.enter({{"/A/b", true}}, Clock::Ticks::max()); });
    ASSERT_TRUE(comesTrue([&] { return !isFree("/A/b", false); })) << "no reader is kept back";
    EXPECT_TRUE(isFree("/A/c", false));
    EXPECT_FALSE(table.enter({{"/A/c", true}}, Clock::Ticks::max())) << "this very thread is in the way";
    EXPECT_TRUE(table.enter({{"/A/b", false}}, 0s)) << "the writer waits for this very thread, who goes first";
    reader.reset();
    EXPECT_TRUE(writer.get());
    EXPECT_TRUE(isFree("/A", true));
}

// Links lead to the same item by another path.
TEST_F(FileCoordinationTest, KnowsAnItemByEveryPath)
{
    platform.drive.tree("Projects/ link->Projects");
    auto coordinator = coordination(0s);
    OtherProcess other(holding({"Projects/Plan.txt", true}));
    other.meet();
    EXPECT_TRUE(access(coordinator, {"link/Plan.txt", false}));
}

// Nobody is kept from the drive because the folder for locks cannot be had.
TEST_F(FileCoordinationTest, WorksWithoutAFolderForLocks)
{
    platform.drive.file("coordination");
    auto coordinator = coordination(0s);
    EXPECT_EQ(access(coordinator, {"A", true}), std::nullopt);
}

} // namespace
} // namespace tessel
