#include "platform/linux/files/AtomicFile.h"
#include "platform/linux/files/FileStateStore.h"
#include "platform/linux/files/FileUserDefaults.h"
#include "platform/linux/files/FolderLock.h"
#include "tests/support/LogCapture.h"
#include "tests/support/ManualClock.h"
#include "tests/support/TemporaryDrive.h"

#include <gmock/gmock.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <random>
#include <thread>

namespace tessel {

namespace {

using ::testing::Contains;
using ::testing::HasSubstr;

Value::Dictionary stateOfRound(std::int64_t round)
{
    return {{"first", round}, {"filling", std::string(20'000, 'x')}, {"last", round}};
}

class DurableFilesTest : public ::testing::Test {
protected:
    DurableFilesTest() { log.addSink(lines); }

    TemporaryDrive folder;
    ManualClock clock;
    UnifiedLog log{clock};
    std::shared_ptr<LogCapture> lines = std::make_shared<LogCapture>();
};

/// As in a process that has every descriptor it may have in use.
class NoMoreDescriptors {
public:
    NoMoreDescriptors()
    {
        EXPECT_EQ(::getrlimit(RLIMIT_NOFILE, &before_), 0);
        const rlimit none{0, before_.rlim_max};
        EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
    }
    ~NoMoreDescriptors() { EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &before_), 0); }
    NoMoreDescriptors(const NoMoreDescriptors&) = delete;
    NoMoreDescriptors& operator=(const NoMoreDescriptors&) = delete;

private:
    rlimit before_{};
};

[[noreturn]] void saveForEver(FileStateStore& store)
{
    for (std::int64_t round = 1;; ++round)
        store.save(stateOfRound(round));
}

} // namespace

// The program is killed again and again while it saves: what is found must be a whole state, and never an older one
// than was found before.
TEST_F(DurableFilesTest, HoldAWholeStateAfterAKillAtAnyMoment)
{
    FileStateStore store(folder.url("state.json"), log);
    store.save(stateOfRound(0));
    std::mt19937 random(2026);
    int killsAmidSaves = 0;
    for (int kill = 0; kill < 60; ++kill) {
        const auto child = ::fork();
        if (child == 0)
            saveForEver(store);
        std::this_thread::sleep_for(std::chrono::microseconds(std::uniform_int_distribution<>(0, 8'000)(random)));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);

        const auto state = store.load();
        ASSERT_TRUE(state);
        const auto* round = state->at("first").get<std::int64_t>();
        ASSERT_TRUE(round);
        ASSERT_EQ(*state, stateOfRound(*round));
        killsAmidSaves += *round > 0 ? 1 : 0;
    }
    EXPECT_GT(killsAmidSaves, 10) << "the children were killed before they saved anything";
    EXPECT_TRUE(lines->lines().empty());
}

TEST_F(DurableFilesTest, SetDamagedOrEnormousFilesAsideAndBeginAgain)
{
    const auto file = folder.file("defaults.json", "{\"token\": tr");
    FileUserDefaults(file, log).set("a", true);
    EXPECT_EQ(folder.read("defaults.json.damaged-1"), "{\"token\": tr");
    EXPECT_EQ(FileUserDefaults(file, log).value("a"), Value(true));
    EXPECT_THAT(lines->lines(), Contains(HasSubstr("defaults.json")));

    folder.file("defaults.json", "[1]");
    EXPECT_TRUE(FileUserDefaults(file, log).value("a").isNone());
    EXPECT_EQ(folder.read("defaults.json.damaged-2"), "[1]");

    folder.file("defaults.json", '"' + std::string(2U << 20U, 'x') + '"');
    EXPECT_FALSE(FileStateStore(file, log).load());
    EXPECT_EQ(folder.read("defaults.json.damaged-3").size(), (2U << 20U) + 2);
}

TEST_F(DurableFilesTest, DefaultsOfTwoProgramsDoNotUndoEachOther)
{
    FileUserDefaults first(folder.url("defaults.json"), log);
    FileUserDefaults second(folder.url("defaults.json"), log);
    EXPECT_TRUE(first.value("a").isNone());
    second.set("b", Data{"\xFF"});
    first.set("a", std::int64_t{1});
    second.set("b", {});

    FileUserDefaults third(folder.url("defaults.json"), log);
    EXPECT_EQ(third.value("a"), Value(std::int64_t{1}));
    EXPECT_TRUE(third.value("b").isNone());
}

// A sound file that cannot be opened just now must neither be moved away nor be replaced by what little is known.
TEST_F(DurableFilesTest, LeaveAFileThatCannotBeReadForNow)
{
    const auto file = folder.url("defaults.json");
    FileUserDefaults(file, log).set("a", true);
    FileUserDefaults defaults(file, log);
    FileStateStore states(file, log);
    {
        const NoMoreDescriptors scope;
        EXPECT_TRUE(defaults.value("a").isNone());
        defaults.set("b", true);
        EXPECT_FALSE(states.load());
    }
    states.save({});
    EXPECT_THAT(lines->lines(), Contains(HasSubstr("leaving it as it is")));
    EXPECT_EQ(FileUserDefaults(file, log).value("a"), Value(true));

    defaults.set("c", true);
    FileUserDefaults reread(file, log);
    for (const auto* key : {"a", "b", "c"})
        EXPECT_EQ(reread.value(key), Value(true)) << key;
}

TEST_F(DurableFilesTest, RemoveWhatAKilledWriterLeftButNotWhatAnotherIsWriting)
{
    folder.tree(".tsd-temporary-oldold .tsd-temporary-newnew .tsd-0123456789abcdef.cloud");
    for (const auto* name : {".tsd-temporary-oldold", ".tsd-0123456789abcdef.cloud"})
        std::filesystem::last_write_time(folder.url(name).path(),
                                         std::filesystem::file_time_type::clock::now() - std::chrono::minutes(2));
    removeAbandonedTemporaryFiles(folder.url());
    EXPECT_FALSE(std::filesystem::exists(folder.url(".tsd-temporary-oldold").path()));
    EXPECT_TRUE(std::filesystem::exists(folder.url(".tsd-temporary-newnew").path()));
    EXPECT_TRUE(std::filesystem::exists(folder.url(".tsd-0123456789abcdef.cloud").path()));
}

// The disk is full, say, or another instance was stopped while it wrote: the user goes on with what was set, and it is
// written with the next change that can be.
TEST_F(DurableFilesTest, KeepAValueThatCannotBeWritten)
{
    FileUserDefaults defaults(folder.url("later/defaults.json"), log);
    defaults.set("a", "kept");
    EXPECT_EQ(defaults.value("a"), Value("kept"));
    EXPECT_THAT(lines->lines(), Contains(HasSubstr("Cannot write")));

    folder.folder("later");
    {
        const FolderLock other(folder.url("later"), std::chrono::milliseconds::zero());
        defaults.set("b", true);
        EXPECT_EQ(defaults.value("b"), Value(true));
        EXPECT_THAT(lines->lines(), Contains(HasSubstr("Another instance holds")));
    }
    EXPECT_FALSE(std::filesystem::exists(folder.url("later/defaults.json").path()));
    defaults.set("c", true);
    FileUserDefaults reread(folder.url("later/defaults.json"), log);
    EXPECT_EQ(reread.value("a"), Value("kept"));
    EXPECT_EQ(reread.value("b"), Value(true));
}

} // namespace tessel
