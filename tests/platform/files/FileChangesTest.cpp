#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/cloud/TagAttribute.h"
#include "platform/linux/files/ExtendedAttributes.h"
#include "platform/linux/files/ItemStamp.h"
#include "platform/linux/files/PosixFileManager.h"
#include "platform/linux/files/UnfinishedWork.h"
#include "platform/linux/files/WithdrawnItem.h"
#include "tests/support/DriveContent.h"
#include "tests/support/FailingCalls.h"
#include "tests/support/OtherProcess.h"
#include "tests/support/TemporaryDrive.h"

#include <gmock/gmock.h>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <vector>

namespace tessel {
namespace {

namespace fs = std::filesystem;
using testing::AnyOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Key;
using testing::Pair;
using testing::UnorderedElementsAre;

// A folder on a file system that is another one than that of temporary files; none where there is none.
class OtherFileSystem {
public:
    OtherFileSystem()
    {
        std::string pattern = "/dev/shm/tesseldrive-test-XXXXXX";
        const auto here = stampOf(URL::file(fs::temp_directory_path().string()));
        const auto there = stampOf(URL::file("/dev/shm"));
        if (here && there && here->device != there->device && ::mkdtemp(pattern.data()))
            url = URL::file(pattern);
    }
    ~OtherFileSystem()
    {
        std::error_code ignored;
        if (url)
            fs::remove_all(url->path(), ignored);
    }
    OtherFileSystem(const OtherFileSystem&) = delete;
    OtherFileSystem& operator=(const OtherFileSystem&) = delete;

    std::optional<URL> url;
};

// Not by writePlaceholder, which waits for the disk.
void makeInCloud(const URL& url)
{
    const std::string name(url.lastPathComponent());
    std::ofstream(placeholderURL(url).path())
        << R"({"name": ")" << name
        << R"(", "size": 9, "modificationDate": 0, "type": "public.text", "identifier": "7"})";
    ASSERT_TRUE(readPlaceholder(placeholderURL(url)));
}

class FileChangesTest : public testing::Test {
protected:
    void makeExample() const
    {
        drive.file("Plan.txt", "plan");
        drive.tree("Projects/ Projects/Deep/ Projects/Deep/Empty/ Projects/link->../Plan.txt Other/");
        drive.file("Projects/Notes.txt", "notes");
        drive.file("Projects/Deep/Shed.txt", "shed");
        makeInCloud(drive.url("Far.txt"));
        makeInCloud(drive.url("Projects/Deep/Away.txt"));
        for (const auto& url : {drive.url("Plan.txt"), drive.url("Projects"), placeholderURL(drive.url("Far.txt"))})
            ASSERT_EQ(setExtendedAttribute(url, kTagAttribute, "Work"), std::nullopt);
    }

    const TemporaryDrive drive{"drive"};
    const URL notes = drive.url().deletingLastPathComponent().appending("unfinished");
    const UnfinishedWork unfinished{notes};
    PosixFileManager files{unfinished};
};

TEST_F(FileChangesTest, NeverReplacesAnything)
{
    makeExample();
    const auto before = contentOf(drive.url());
    const auto taken = {drive.url("Plan.txt"), drive.url("Far.txt"), drive.url("Other")};
    for (const auto& from : {drive.file("Projects/Notes.txt", "notes"), drive.url("Projects/Deep/Away.txt")})
        for (const auto& to : taken) {
            const auto error = files.moveItem(from, to);
            ASSERT_TRUE(error) << to.path();
            EXPECT_EQ(error->code, ErrorCode::kFileExists);
            EXPECT_THAT(error->userInformation, ElementsAre(Pair(ErrorKey::kDestinationFilePath, to.path())));
        }
    for (const auto& url : taken)
        EXPECT_EQ(files.createDirectory(url, WithIntermediates::No)->code, ErrorCode::kFileExists);
    EXPECT_EQ(files.createDirectory(drive.url("Far.txt/In"), WithIntermediates::Yes)->code, ErrorCode::kFileExists);
    EXPECT_EQ(files.createDirectory(drive.url("Other"), WithIntermediates::Yes), std::nullopt);
    EXPECT_EQ(contentOf(drive.url()), before);
}

// A download that was interrupted at its very end leaves the document and its placeholder, of which the document
// counts. The placeholder must not come to light when the document goes.
TEST_F(FileChangesTest, TakesAPlaceholderAwayWithItsDocument)
{
    for (const auto* name : {"Moved.txt", "Removed.txt"})
        makeInCloud(drive.file(name, "here"));
    EXPECT_EQ(files.moveItem(drive.url("Moved.txt"), drive.url("There.txt")), std::nullopt);
    EXPECT_EQ(files.removeItem(drive.url("Removed.txt"), {}), std::nullopt);
    EXPECT_THAT(contentOf(drive.url()), ElementsAre(Pair("There.txt", "here")));
}

TEST_F(FileChangesTest, RenamesADocumentInTheCloudAsOften)
{
    makeInCloud(drive.url("A.txt"));
    drive.folder("Sub");
    for (const auto& [from, to] : {std::pair("A.txt", "\xff.txt"), {"\xff.txt", "B.txt"}, {"B.txt", "Sub/B.txt"}})
        ASSERT_EQ(files.moveItem(drive.url(from), drive.url(to)), std::nullopt) << to;
    EXPECT_THAT(contentOf(drive.url()), UnorderedElementsAre(Pair("Sub", "folder"), Pair("Sub/B.txt", "in the cloud")));
    EXPECT_EQ(files.moveItem(drive.url("B.txt"), drive.url("C.txt"))->code, ErrorCode::kNoSuchFile);
}

TEST_F(FileChangesTest, RemovesLinksAndNotWhatTheyLeadTo)
{
    drive.tree("Projects/ Projects/Plan.txt Old/ Old/link->../Projects link->Projects");
    EXPECT_EQ(files.removeItem(drive.url("link"), {}), std::nullopt);
    EXPECT_EQ(files.removeItem(drive.url("Old"), {}), std::nullopt);
    EXPECT_THAT(contentOf(drive.url()), UnorderedElementsAre(Key("Projects"), Key("Projects/Plan.txt")));
    EXPECT_EQ(files.removeItem(drive.url("Gone"), {})->code, ErrorCode::kNoSuchFile);
}

TEST_F(FileChangesTest, RefusesToMoveAFolderIntoItself)
{
    makeExample();
    const auto before = contentOf(drive.url());
    EXPECT_TRUE(files.moveItem(drive.url("Projects"), drive.url("Projects/Deep/Projects")));
    EXPECT_EQ(contentOf(drive.url()), before);
}

// Killed while it removed a folder, the program has removed it; one that held something else than was to be removed,
// which only a program that does not coordinate can bring about, is put back.
TEST_F(FileChangesTest, ClearsUpAfterAProgramThatWasKilled)
{
    makeExample();
    drive.file("Other/Plan.txt", "saved meanwhile");
    const auto before = contentOf(drive.url());
    if (const auto child = ::fork(); child == 0) {
        UnfinishedChange plan;
        plan.stamp = stampOf(drive.url("Plan.txt"));
        const auto first = WithdrawnItem::withdraw(drive.url("Projects"), drive.url(), unfinished);
        const auto second = WithdrawnItem::withdraw(drive.url("Other/Plan.txt"), drive.url(), unfinished, plan);
        ::kill(::getpid(), SIGKILL);
        ::_exit(first && second ? 0 : 1);
    } else {
        ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    }
    ASSERT_THAT(contentOf(drive.url()), testing::Not(Contains(Key("Projects"))));
    const auto stillRunning = WithdrawnItem::withdraw(drive.url("Plan.txt"), drive.url(), unfinished);
    const auto aside = stillRunning->location();
    unfinished.clearUp();
    EXPECT_EQ(drive.read("Other/Plan.txt"), "saved meanwhile");
    EXPECT_TRUE(stampOf(aside)) << "what a running program is at is not cleared up";
    EXPECT_THAT(contentOf(drive.url()).size(), before.size() - 7); // Projects and what was in it
    EXPECT_EQ(std::distance(fs::directory_iterator(notes.path()), fs::directory_iterator()), 1);
}

// Only letters' case was to change, for which some file systems need two steps.
TEST_F(FileChangesTest, EndsTheRenamingOfAProgramThatWasKilled)
{
    const auto plan = drive.file("Plan.txt", "plan");
    OtherProcess other([&](OtherProcess&) {
        const auto hidden = hiddenNameBeside(plan);
        const auto note = unfinished.remember({hidden, drive.url("PLAN.txt"), {}, {}, {}});
        fs::rename(plan.path(), hidden.path());
        ::kill(::getpid(), SIGKILL);
    });
    EXPECT_FALSE(other.finish());
    unfinished.clearUp();
    EXPECT_THAT(contentOf(drive.url()), ElementsAre(Pair("PLAN.txt", "plan")));
}

// A program that does not coordinate saves the document anew while it goes elsewhere: no version is lost.
TEST_F(FileChangesTest, LosesNothingThatIsSavedMeanwhile)
{
    const OtherFileSystem other;
    if (!other.url || !canMakeCallsFail())
        GTEST_SKIP() << "no other file system here, or no system call filters";
    bool wasReached = true;
    for (int n = 1; wasReached; ++n) {
        const auto place = other.url->appending("Plan.txt");
        fs::remove(place.path());
        drive.file("Plan.txt", "first");
        const auto save = [&] { fs::rename(drive.file("New.txt", "second").path(), drive.url("Plan.txt").path()); };
        wasReached = runInterrupted(n, save, [&] { (void)files.moveItem(drive.url("Plan.txt"), place); });
        EXPECT_TRUE(!wasReached || drive.read("Plan.txt") == "second" || contentOfItem(place) == "second")
            << "at call " << n;
    }
}

// The copy is read back before the source goes: here something else has been written of it.
TEST_F(FileChangesTest, SeesThatACopyIsNotWhatItShouldBe)
{
    const OtherFileSystem other;
    if (!other.url || !canMakeCallsFail())
        GTEST_SKIP() << "no other file system here, or no system call filters";
    const auto place = other.url->appending("Plan.txt");
    const auto damageCopy = [&] {
        for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
            std::error_code ignored;
            const bool isCopy = fs::read_symlink(entry, ignored).native().starts_with(other.url->path()) &&
                                fs::is_regular_file(entry, ignored);
            if (isCopy)
                std::ofstream(entry.path(), std::ios::in | std::ios::out) << "X";
        }
    };
    int refusals = 0;
    bool wasReached = true;
    for (int n = 1; wasReached; ++n) {
        fs::remove(place.path());
        drive.file("Plan.txt", "first");
        std::optional<Error> error;
        wasReached = runInterrupted(n, damageCopy, [&] { error = files.moveItem(drive.url("Plan.txt"), place); });
        refusals += error.has_value();
        EXPECT_EQ(error.has_value(), fs::exists(drive.url("Plan.txt").path())) << "at call " << n;
        EXPECT_NE(error.has_value(), fs::exists(place.path())) << "at call " << n;
    }
    EXPECT_GT(refusals, 0);
}

struct Change {
    const char* name;
    const char* item;
    std::optional<Error> (*make)(FileManager&, const URL& drive, const URL& other);
    bool needsOtherFileSystem = false;
};

const Change kChanges[] = {
    {"MakeFolders", "In",
     [](FileManager& files, const URL& drive, const URL&) {
         return files.createDirectory(drive.appending("New/Folder/In"), WithIntermediates::Yes);
     }},
    {"RemoveFile", "Plan.txt",
     [](FileManager& files, const URL& drive, const URL&) {
         return files.removeItem(drive.appending("Plan.txt"), {});
     }},
    {"RemoveFileOfDate", "Plan.txt",
     [](FileManager& files, const URL& drive, const URL&) {
         const auto plan = drive.appending("Plan.txt");
         const auto stamp = stampOf(plan);
         return stamp ? files.removeItem(plan, Date{stamp->modified}) : errnoError(errno, plan);
     }},
    {"RemoveFolder", "Projects",
     [](FileManager& files, const URL& drive, const URL&) {
         return files.removeItem(drive.appending("Projects"), {});
     }},
    {"RemoveInCloud", "Far.txt",
     [](FileManager& files, const URL& drive, const URL&) { return files.removeItem(drive.appending("Far.txt"), {}); }},
    {"RenameFile", "Plan.txt",
     [](FileManager& files, const URL& drive, const URL&) {
         return files.moveItem(drive.appending("Plan.txt"), drive.appending("Other/Plan 2.txt"));
     }},
    {"RenameInCloud", "Far.txt",
     [](FileManager& files, const URL& drive, const URL&) {
         return files.moveItem(drive.appending("Far.txt"), drive.appending("Other/Near.txt"));
     }},
    {"MoveFileAway", "Plan.txt",
     [](FileManager& files, const URL& drive, const URL& other) {
         return files.moveItem(drive.appending("Plan.txt"), other.appending("Plan.txt"));
     },
     true},
    {"MoveFolderAway", "Projects",
     [](FileManager& files, const URL& drive, const URL& other) {
         return files.moveItem(drive.appending("Projects"), other.appending("Projects"));
     },
     true},
    {"MoveInCloudAway", "Far.txt",
     [](FileManager& files, const URL& drive, const URL& other) {
         return files.moveItem(drive.appending("Far.txt"), other.appending("Near.txt"));
     },
     true},
};

class FailingChangesTest : public FileChangesTest, public testing::WithParamInterface<Change> {
protected:
    using State = std::pair<std::map<std::string, std::string>, std::map<std::string, std::string>>;

    void SetUp() override
    {
        if (!canMakeCallsFail())
            GTEST_SKIP() << "no system call filters here";
        if (GetParam().needsOtherFileSystem && !other.url)
            GTEST_SKIP() << "no other file system here";
    }

    [[nodiscard]] URL otherFolder() const { return other.url.value_or(drive.url("Other")); }
    [[nodiscard]] State state() const { return {contentOf(drive.url()), contentOf(otherFolder())}; }

    void begin() const
    {
        for (const auto& folder : {drive.url(), otherFolder()})
            for (const auto& entry : fs::directory_iterator(folder.path()))
                fs::remove_all(entry.path());
        makeExample();
    }

    const OtherFileSystem other;
};

// Whichever call fails, and however: the change is made or not made, its error names the item, and nothing is left.
TEST_P(FailingChangesTest, AreMadeOrNotMade)
{
    begin();
    const auto before = state();
    ASSERT_EQ(GetParam().make(files, drive.url(), otherFolder()), std::nullopt);
    const auto after = state();
    ASSERT_NE(after, before);
    int failures = 0;
    for (const int errorNumber : {EIO, ENOSPC, EDQUOT, EACCES, EXDEV, EINTR}) {
        bool wasReached = true;
        for (int n = 1; wasReached; ++n) {
            begin();
            std::optional<Error> error;
            wasReached =
                runWithFailingCall(n, errorNumber, [&] { error = GetParam().make(files, drive.url(), otherFolder()); });
            unfinished.clearUp();
            EXPECT_EQ(state(), error ? before : after) << "call " << n << ", " << ::strerror(errorNumber);
            EXPECT_THAT(error ? error->description : GetParam().item, HasSubstr(GetParam().item));
            failures += error.has_value();
        }
        if (HasFailure())
            return;
    }
    EXPECT_GT(failures, 0);
}

// Wherever the program is killed, the next start finds the change made or not made, and leaves nothing.
TEST_P(FailingChangesTest, AreMadeOrNotMadeByAProgramThatIsKilled)
{
    begin();
    const auto before = state();
    ASSERT_EQ(GetParam().make(files, drive.url(), otherFolder()), std::nullopt);
    const auto after = state();
    bool wasReached = true;
    for (int n = 1; wasReached && !HasFailure(); ++n) {
        begin();
        OtherProcess other([&](OtherProcess&) {
            (void)runInterrupted(
                n, [] { ::kill(::getpid(), SIGKILL); },
                [&] { (void)GetParam().make(files, drive.url(), otherFolder()); });
        });
        wasReached = !other.finish();
        unfinished.clearUp();
        EXPECT_THAT(state(), AnyOf(before, after)) << "at call " << n;
    }
}

// An editor, who asks nobody, saves at any moment by putting a new file in the place of the old one. What it saved is
// never removed.
class EditedMeanwhileTest : public FileChangesTest {
protected:
    void SetUp() override
    {
        if (!canMakeCallsFail())
            GTEST_SKIP() << "no system call filters here";
    }

    static void save(const URL& document, const char* content)
    {
        const auto hidden = document.path() + ".new";
        std::ofstream(hidden) << content;
        fs::rename(hidden, document.path());
    }

    [[nodiscard]] static std::vector<std::string> contents(const URL& folder)
    {
        std::vector<std::string> found;
        for (const auto& [name, content] : contentOf(folder))
            found.push_back(content);
        return found;
    }
};

TEST_F(EditedMeanwhileTest, KeepsADocumentThatIsToBeRemoved)
{
    const auto plan = drive.url("Plan.txt");
    bool wasReached = true;
    for (int n = 1; wasReached && !HasFailure(); ++n) {
        drive.file("Plan.txt", "old");
        fs::last_write_time(plan.path(), fs::file_time_type::clock::now() - std::chrono::hours(1));
        const auto old = stampOf(plan);
        wasReached = runInterrupted(
            n, [&] { save(plan, "saved"); }, [&] { (void)files.removeItem(plan, Date{old->modified}); });
        EXPECT_EQ(contents(drive.url()), wasReached ? std::vector<std::string>{"saved"} : std::vector<std::string>{})
            << "at call " << n;
        fs::remove(plan.path());
    }
}

// Both the old place and the new one, where the editor may have found it by then.
TEST_F(EditedMeanwhileTest, KeepsBothDocumentsWhenOneMovesToAnotherFileSystem)
{
    const OtherFileSystem other;
    if (!other.url)
        GTEST_SKIP() << "no other file system here";
    const auto plan = drive.url("Plan.txt");
    const auto moved = other.url->appending("Plan.txt");
    bool wasReached = true;
    for (int n = 1; wasReached && !HasFailure(); ++n) {
        drive.file("Plan.txt", "old");
        bool isSavedThere = false;
        const auto edit = [&] {
            save(plan, "saved here");
            isSavedThere = fs::exists(moved.path());
            if (isSavedThere)
                save(moved, "saved there");
        };
        wasReached = runInterrupted(n, edit, [&] { (void)files.moveItem(plan, moved); });
        auto found = contents(drive.url());
        for (auto& content : contents(*other.url))
            found.push_back(std::move(content));
        EXPECT_EQ(std::ranges::count(found, wasReached ? "saved here" : "old"), 1) << "at call " << n;
        EXPECT_EQ(std::ranges::count(found, "saved there"), isSavedThere) << "at call " << n;
        fs::remove(plan.path());
        fs::remove(moved.path());
    }
}

INSTANTIATE_TEST_SUITE_P(All, FailingChangesTest, testing::ValuesIn(kChanges),
                         [](const auto& change) { return std::string(change.param.name); });

} // namespace
} // namespace tessel
