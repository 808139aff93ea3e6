#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/cloud/TagAttribute.h"
#include "platform/linux/files/ExtendedAttributes.h"
#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/files/LinuxFolderReader.h"
#include "platform/text/TextServices.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <thread>

namespace tessel {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Follows a folder as a list does.
class Follower {
public:
    Follower(InstalledPlatform& platform, const URL& folder) : Follower(platform, folder, platform.services().folders)
    {
    }
    Follower(InstalledPlatform& platform, const URL& folder, FolderReader& reader)
        : platform_(platform), text_(platform.services().text)
    {
        reading = reader.read(folder,
                              {.firstRows = [this](FolderTable table) { firstRows = namesOf(table); },
                               .complete =
                                   [this](FolderTable table) {
                                       rows = std::move(table);
                                       isComplete = true;
                                   },
                               .changed = [this](const auto& changes) { (void)rows.apply(changes, text_); },
                               .replaced =
                                   [this](FolderTable table) {
                                       (void)rows.replaceWith(std::move(table), text_);
                                       replacements++;
                                   },
                               .failed = [this](const Error& error) { failure = error; },
                               .removed = [this] { removals++; },
                               .details = [this](const URL& url, const ItemDetails& found) { details[url] = found; }});
    }

    static std::vector<std::string> namesOf(const FolderTable& table)
    {
        std::vector<std::string> names;
        for (const auto name : table.names())
            names.emplace_back(name);
        return names;
    }
    [[nodiscard]] std::vector<std::string> names() const { return namesOf(rows); }
    [[nodiscard]] FolderEntry entry(const std::string& name) const
    {
        const auto index = rows.find(name, text_);
        return index ? rows.entry(*index) : FolderEntry{.size = -2};
    }
    bool waitUntilComplete()
    {
        return platform_.runUntil([this] { return isComplete; });
    }

    FolderTable rows;
    std::vector<std::string> firstRows;
    bool isComplete = false;
    std::optional<Error> failure;
    int removals = 0;
    int replacements = 0;
    std::map<URL, ItemDetails> details;
    std::unique_ptr<FolderReading> reading;

private:
    InstalledPlatform& platform_;
    const TextServices& text_;
};

/// A reader besides the installed one, for a test that makes it under some circumstance or ends it.
std::unique_ptr<LinuxFolderReader> makeReader(InstalledPlatform& platform, std::size_t changedNamesLimit = 8192)
{
    const auto services = platform.services();
    return std::make_unique<LinuxFolderReader>(
        FolderServices{services.mainQueue, services.log, services.text, services.types, services.files, services.cloud},
        changedNamesLimit);
}

class FolderReaderTest : public testing::Test {
protected:
    /// The folder as another program sees it, in the list's order.
    [[nodiscard]] std::vector<std::string> onDisk(const URL& folder) const
    {
        std::vector<std::string> names;
        for (const auto& item : fs::directory_iterator(folder.path()))
            names.push_back(item.path().filename());
        const auto& text = platform::installed().text;
        std::ranges::sort(names,
                          [&](const auto& left, const auto& right) { return text.compareNames(left, right) < 0; });
        return names;
    }

    void placeholder(const URL& logical, std::uint64_t size)
    {
        PlaceholderRecord record;
        record.name = logical.lastPathComponent();
        record.size = size;
        record.modificationDate = Date{5};
        record.type = "public.data";
        record.identifier = "id";
        ASSERT_FALSE(writePlaceholder(logical, record));
    }

    InstalledPlatform platform;
    const TemporaryDrive& drive = platform.drive;
};

TEST_F(FolderReaderTest, ListsItemsOfEveryKindInNaturalOrderWithTheirAttributes)
{
    drive.tree("F/Folder/ F/Slides.lookbook/ F/Link->Folder F/.hidden F/.config/");
    drive.file("F/File 10.txt");
    drive.file("F/File 9.txt", "1234");
    Follower list(platform, drive.url("F"));
    ASSERT_TRUE(list.waitUntilComplete());
    EXPECT_THAT(list.names(), ElementsAre("File 9.txt", "File 10.txt", "Folder", "Link", "Slides.lookbook"));
    EXPECT_EQ(list.entry("File 9.txt").size, 4);
    EXPECT_GT(list.entry("File 9.txt").modificationTime, 0);
    EXPECT_EQ(list.entry("Folder").kind, EntryKind::Folder);
    EXPECT_EQ(list.entry("Slides.lookbook").kind, EntryKind::Package);
    EXPECT_EQ(list.entry("Link").kind, EntryKind::Link);
}

TEST_F(FolderReaderTest, ListsNamesThatNobodyWouldChoose)
{
    const std::vector<std::string> odd{
        " ",       "\"quoted'", "new\nline", "\xff\xfe not UTF-8", "\u05e9\u05dc\u05d5\u05dd", std::string(255, 'w'),
        "e\u0301", "\u00e9"};
    for (const auto& name : odd)
        drive.file("F/" + name, "x");
    Follower list(platform, drive.url("F"));
    ASSERT_TRUE(list.waitUntilComplete());
    EXPECT_EQ(list.names(), onDisk(drive.url("F")));
    for (const auto& name : odd)
        EXPECT_EQ(list.entry(name).size, 1) << name;
}

TEST_F(FolderReaderTest, TellsTheFirstScreenInItsFinalOrder)
{
    for (int number = 0; number < 700; ++number)
        drive.file("F/Item " + std::to_string(number));
    placeholder(drive.url("F/Item 7b"), 3);
    Follower list(platform, drive.url("F"));
    ASSERT_TRUE(list.waitUntilComplete());
    auto beginning = list.names();
    ASSERT_EQ(beginning.size(), 701U);
    beginning.resize(50);
    EXPECT_EQ(list.firstRows, beginning);
    EXPECT_THAT(list.firstRows, Contains("Item 7b"));
}

TEST_F(FolderReaderTest, FailsWithTheReasonAndNeverAsAnEmptyFolder)
{
    drive.file("File");
    for (const auto* const name : {"File", "Nothing"}) {
        Follower list(platform, drive.url(name));
        ASSERT_TRUE(platform.runUntil([&] { return list.failure.has_value(); }));
        EXPECT_FALSE(list.isComplete);
        EXPECT_THAT(list.failure->description, HasSubstr(name));
    }
}

/// The super-user may read everything: a child process becomes somebody else first, in a drive of everybody's.
bool holdsForSomebodyElse(const std::function<bool(const TemporaryDrive&)>& test)
{
    const TemporaryDrive drive;
    fs::permissions(drive.url().path(), fs::perms::all);
    const auto child = ::fork();
    if (child == 0)
        ::_exit((::geteuid() != 0 || ::setuid(65534) == 0) && test(drive) ? 0 : 1);
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(FolderReaderPermissionTest, FailsForAFolderThatMayNotBeRead)
{
    EXPECT_TRUE(holdsForSomebodyElse([](const TemporaryDrive& drive) {
        const auto folder = drive.folder("Closed");
        fs::permissions(folder.path(), fs::perms::owner_exec);
        InstalledPlatform platform;
        Follower list(platform, folder);
        return platform.runUntil([&] { return list.failure.has_value(); }) && !list.isComplete &&
               list.failure->code == ErrorCode::kReadNoPermission;
    }));
}

// Its owner closes a shown folder or one above it, changes something there, and opens it again.
TEST(FolderReaderPermissionTest, FailsWhileAShownFolderIsClosedAndRecovers)
{
    const auto closed = [](const std::string& name) {
        return holdsForSomebodyElse([&](const TemporaryDrive& drive) {
            drive.tree("Above/Folder/Old");
            InstalledPlatform platform;
            Follower list(platform, drive.url("Above/Folder"));
            const bool isShown = list.waitUntilComplete();
            const FileDescriptor old(::open(drive.url("Above/Folder/Old").path().c_str(), O_RDONLY));
            fs::permissions(drive.url(name).path(), fs::perms::none);
            ::fchmod(old.get(), 0400);
            const bool failed = platform.runUntil([&] { return list.failure.has_value(); });
            fs::permissions(drive.url(name).path(), fs::perms::owner_all);
            drive.file("Above/Folder/New");
            return isShown && failed && platform.runUntil([&] { return list.rows.size() == 2; });
        });
    };
    EXPECT_TRUE(closed("Above/Folder"));
    EXPECT_TRUE(closed("Above"));
}

TEST(FolderReaderPermissionTest, KnowsTheKindsOfItemsThatMayNotBeLookedAt)
{
    EXPECT_TRUE(holdsForSomebodyElse([](const TemporaryDrive& drive) {
        drive.tree("F/Folder/ F/Slides.lookbook/ F/Link->Folder F/File");
        fs::permissions(drive.url("F").path(), fs::perms::owner_read);
        InstalledPlatform platform;
        Follower list(platform, drive.url("F"));
        const bool isShown = list.waitUntilComplete();
        fs::permissions(drive.url("F").path(), fs::perms::owner_all);
        return isShown && list.entry("Folder").kind == EntryKind::Folder &&
               list.entry("Slides.lookbook").kind == EntryKind::Package && list.entry("Link").kind == EntryKind::Link &&
               platform.runUntil([&] { return list.entry("File").size == 0; });
    }));
}

TEST(FolderReaderPermissionTest, SurvivesThatNoThreadIsLeft)
{
    EXPECT_TRUE(holdsForSomebodyElse([](const TemporaryDrive& drive) {
        InstalledPlatform platform;
        rlimit usual{};
        ::getrlimit(RLIMIT_NPROC, &usual);
        const rlimit none{0, usual.rlim_max};
        ::setrlimit(RLIMIT_NPROC, &none);
        const auto reader = makeReader(platform);
        Follower waiting(platform, drive.folder("F"), *reader);
        ::setrlimit(RLIMIT_NPROC, &usual);
        Follower next(platform, drive.folder("G"), *reader);
        return waiting.waitUntilComplete() && next.waitUntilComplete();
    }));
}

TEST_F(FolderReaderTest, FollowsWhatOtherProgramsDo)
{
    drive.tree("F/Gone F/Old F/Grows");
    Follower list(platform, drive.url("F"));
    Follower second(platform, drive.url("F"));
    ASSERT_TRUE(list.waitUntilComplete() && second.waitUntilComplete());
    fs::remove(drive.url("F/Gone").path());
    fs::rename(drive.url("F/Old").path(), drive.url("F/New").path());
    drive.file("F/Grows", "12345");
    drive.folder("F/Sub");
    drive.file("F/.hidden");
    for (auto* follower : {&list, &second}) {
        EXPECT_TRUE(platform.runUntil([&] {
            return follower->names() == std::vector<std::string>{"Grows", "New", "Sub"};
        }));
        EXPECT_TRUE(platform.runUntil([&] { return follower->entry("Grows").size == 5; }));
    }
}

TEST_F(FolderReaderTest, EqualsTheFolderAfterABurstOfChanges)
{
    const auto folder = drive.folder("F");
    const auto content = drive.file("content").path();
    // Of one content, for some file systems are slow to make files where many were removed.
    const auto make = [&](const std::string& name) { fs::create_hard_link(content, folder.path() + "/" + name); };
    for (int number = 0; number < 2000; ++number)
        make("Old " + std::to_string(number));
    Follower list(platform, folder);
    std::thread other([&] { // from before the listing is complete
        for (int number = 0; number < 10'000; ++number) {
            const auto name = "Item " + std::to_string(number);
            make(name);
            if (number % 3 == 0)
                fs::remove(folder.appending(name).path());
            else if (number % 3 == 1)
                fs::rename(folder.appending(name).path(), folder.path() + "/Renamed " + std::to_string(number));
            if (number % 7 == 0)
                fs::remove(folder.path() + "/Old " + std::to_string(number));
        }
    });
    other.join();
    const auto expected = onDisk(folder);
    EXPECT_TRUE(platform.runUntil([&] { return list.isComplete && list.names() == expected; }));
}

TEST_F(FolderReaderTest, ReadsTheFolderAnewWhenMoreHasChangedThanIsKept)
{
    const auto reader = makeReader(platform, 10);
    drive.file("F/first");
    Follower list(platform, drive.url("F"), *reader);
    ASSERT_TRUE(list.waitUntilComplete());
    for (int number = 0; number < 300; ++number)
        drive.file("F/" + std::to_string(number), "x");
    ASSERT_TRUE(platform.runUntil([&] { return list.rows.size() == 301 && list.entry("299").size == 1; }));
    EXPECT_GT(list.replacements, 0);
}

TEST_F(FolderReaderTest, TellsOnceThatTheFolderOrOneAboveItIsGone)
{
    const std::vector<std::pair<std::string, std::function<void()>>> ways{
        {"A/B/C", [&] { fs::remove(drive.url("A/B/C").path()); }},
        {"D/E/F", [&] { fs::rename(drive.url("D/E/F").path(), drive.url("D/E/G").path()); }},
        {"H/I/J", [&] { fs::rename(drive.url("H").path(), drive.url("K").path()); }},
        {"L/M", [&] {
             fs::rename(drive.url("L/M").path(), drive.url("N").path());
             drive.file("L/M/another folder of this name");
         }}};
    for (const auto& [path, way] : ways) {
        const auto folder = drive.folder(path);
        // Whoever stands in a folder keeps the kernel from reporting its removal.
        const FileDescriptor held(::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY));
        Follower list(platform, folder);
        ASSERT_TRUE(list.waitUntilComplete());
        way();
        ASSERT_TRUE(platform.runUntil([&] { return list.removals > 0; })) << path;
        DispatchQueue::main().runReady();
        EXPECT_EQ(list.removals, 1) << path;
    }
}

TEST_F(FolderReaderTest, StaysWithAFolderThatMovedAndCameBack)
{
    Follower list(platform, drive.folder("F"));
    ASSERT_TRUE(list.waitUntilComplete());
    fs::rename(drive.url("F").path(), drive.url("G").path());
    fs::rename(drive.url("G").path(), drive.url("F").path());
    drive.file("F/New");
    EXPECT_TRUE(platform.runUntil([&] { return !list.rows.empty(); }));
    EXPECT_EQ(list.removals, 0);
}

TEST_F(FolderReaderTest, ListsPlaceholdersAsTheDocumentsThatTheyStandFor)
{
    drive.file("F/Both", "1");
    placeholder(drive.url("F/Both"), 100);
    placeholder(drive.url("F/Cloud"), 200);
    drive.file("F/.tsd-0123456789abcdef.cloud", "damaged");
    Follower list(platform, drive.url("F"));
    ASSERT_TRUE(list.waitUntilComplete());
    EXPECT_THAT(list.names(), ElementsAre("Both", "Cloud"));
    EXPECT_EQ(list.entry("Both").size, 1);
    EXPECT_FALSE(list.entry("Both").inCloud);
    EXPECT_EQ(list.entry("Cloud"),
              (FolderEntry{.size = 200, .modificationTime = 5, .kind = EntryKind::File, .inCloud = true}));
    EXPECT_THAT(platform.log->lines(), Contains(HasSubstr("Damaged placeholder")));

    // Downloaded, evicted, and deleted in the cloud.
    drive.file("F/Cloud", "12");
    fs::remove(placeholderURL(drive.url("F/Cloud")).path());
    EXPECT_TRUE(platform.runUntil([&] { return list.entry("Cloud").size == 2; }));
    placeholder(drive.url("F/Cloud"), 300);
    fs::remove(drive.url("F/Cloud").path());
    EXPECT_TRUE(platform.runUntil([&] { return list.entry("Cloud").size == 300; }));
    fs::remove(placeholderURL(drive.url("F/Cloud")).path());
    EXPECT_TRUE(platform.runUntil([&] { return list.names() == std::vector<std::string>{"Both"}; }));
}

TEST_F(FolderReaderTest, FetchesDetailsOfWhatIsLookedAt)
{
    drive.tree("F/Sub/a F/Sub/b F/Sub/.hidden");
    drive.file("F/Slides.lookbook/one/part", "12345");
    drive.file("F/Slides.lookbook/.index", "123");
    drive.file("F/Alias.desktop", "[Desktop Entry]\nType=Link\nURL=file:///\n");
    placeholder(drive.url("F/Sub/b"), 1);
    placeholder(drive.url("F/Sub/c"), 1);
    const bool keepsTags = !setExtendedAttribute(drive.url("F/Sub"), kTagAttribute, "Red");
    Follower list(platform, drive.url("F"));
    ASSERT_TRUE(list.waitUntilComplete());
    list.reading->fetchDetails({drive.url("F/Sub"), drive.url("F/Slides.lookbook"), drive.url("F/Alias.desktop")});
    EXPECT_TRUE(list.reading->isFetchingDetails());
    ASSERT_TRUE(platform.runUntil([&] { return !list.reading->isFetchingDetails(); }));
    EXPECT_EQ(list.details[drive.url("F/Sub")].itemCount, 3U);
    EXPECT_EQ(list.details[drive.url("F/Sub")].tags.size(), keepsTags ? 1U : 0U)
        << "as far as the file system keeps it";
    EXPECT_EQ(list.details[drive.url("F/Slides.lookbook")].packageSize, 8U);
    EXPECT_TRUE(list.details[drive.url("F/Alias.desktop")].isAliasFile);
}

TEST_F(FolderReaderTest, LooksAtAFolderNowAndThenWhenItCannotBeWatched)
{
    rlimit usual{};
    ::getrlimit(RLIMIT_NOFILE, &usual);
    const rlimit none{0, usual.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &none);
    const auto reader = makeReader(platform); // no descriptor is left for inotify
    ::setrlimit(RLIMIT_NOFILE, &usual);

    Follower grown(platform, drive.folder("Grown"), *reader);
    Follower gone(platform, drive.folder("Gone"), *reader);
    ASSERT_TRUE(grown.waitUntilComplete() && gone.waitUntilComplete());
    EXPECT_THAT(platform.log->lines(), Contains(HasSubstr("No watch left for folder")));
    drive.file("Grown/New");
    fs::remove(drive.url("Gone").path());
    EXPECT_TRUE(platform.runUntil([&] { return !grown.rows.empty() && gone.removals > 0; }));
    EXPECT_THAT(grown.names(), ElementsAre("New"));
}

// At every moment of a reading: before it begins, half-way, while changes and details come.
TEST_F(FolderReaderTest, TellsNothingAfterItWasDestroyed)
{
    for (int number = 0; number < 600; ++number)
        drive.file("F/Item " + std::to_string(number));
    auto reader = makeReader(platform);
    bool isDestroyed = false;
    int toldTooLate = 0;
    const auto tell = [&] { toldTooLate += isDestroyed; };
    for (int round = 0; round < 150; ++round) {
        isDestroyed = false;
        auto reading = reader->read(drive.url("F"), {.firstRows = [&](FolderTable) { tell(); },
                                                     .complete = [&](FolderTable) { tell(); },
                                                     .changed = [&](const auto&) { tell(); },
                                                     .replaced = [&](FolderTable) { tell(); },
                                                     .failed = [&](const Error&) { tell(); },
                                                     .removed = [&] { tell(); },
                                                     .details = [&](const auto&, const auto&) { tell(); }});
        reading->fetchDetails({drive.url("F/Item 1"), drive.url("F/Item 2")});
        drive.file("F/Item 1", std::to_string(round));
        std::this_thread::sleep_for(std::chrono::microseconds(round * 50));
        if (round % 2)
            DispatchQueue::main().runReady();
        reading.reset();
        isDestroyed = true;
        DispatchQueue::main().runReady();
    }
    reader.reset(); // with readings begun and ended a moment ago
    DispatchQueue::main().runReady();
    EXPECT_EQ(toldTooLate, 0);
}

TEST_F(FolderReaderTest, SurvivesThatTheFolderVanishesWhileItIsRead)
{
    for (int round = 0; round < 10; ++round) {
        for (int number = 0; number < 100; ++number)
            drive.file("F/Item " + std::to_string(number));
        Follower list(platform, drive.url("F"));
        std::this_thread::sleep_for(std::chrono::microseconds(round * 20));
        fs::remove_all(drive.url("F").path());
        EXPECT_TRUE(platform.runUntil([&] { return list.failure || list.removals == 1; }));
    }
}

class FolderSearchTest : public FolderReaderTest {
protected:
    std::vector<std::string> found(const URL& folder, const std::string& query)
    {
        std::vector<std::string> paths;
        bool finished = false;
        const auto client = SearchClient{.found =
                                             [&](const std::vector<SearchHit>& hits) {
                                                 for (const auto& hit : hits)
                                                     paths.push_back(hit.url.path().substr(folder.path().size() + 1));
                                             },
                                         .finished = [&] { finished = true; }};
        const auto search = platform.services().folders.search({folder}, query, client);
        EXPECT_TRUE(platform.runUntil([&] { return finished; }));
        std::sort(paths.begin(), paths.end());
        return paths;
    }
};

TEST_F(FolderSearchTest, FindsVisibleItemsAtAnyDepth)
{
    drive.tree("F/plan.txt F/Deep/er/PLAN F/Deep/other F/plan.lookbook/plan F/.plan F/.h/plan F/link-to-plan->Deep");
    drive.file("F/Deep/pla\u0301n");
    placeholder(drive.url("F/Deep/plan in the cloud"), 1);
    EXPECT_THAT(found(drive.url("F"), "Plan"), ElementsAre("Deep/er/PLAN", "Deep/plan in the cloud", "Deep/pla\u0301n",
                                                           "link-to-plan", "plan.lookbook", "plan.txt"));
    EXPECT_THAT(found(drive.url("Nothing"), "plan"), IsEmpty());
}

TEST_F(FolderSearchTest, ReachesTheBottomOfATreeDeeperThanAnyPath)
{
    constexpr int kDepth = 250;
    const std::string name(80, 'd');
    FileDescriptor folder(::open(drive.folder("F").path().c_str(), O_RDONLY | O_DIRECTORY));
    for (int depth = 0; depth < kDepth; ++depth) {
        ASSERT_EQ(::mkdirat(folder.get(), name.c_str(), 0700), 0);
        folder = FileDescriptor(::openat(folder.get(), name.c_str(), O_RDONLY | O_DIRECTORY));
    }
    ASSERT_EQ(::mkdirat(folder.get(), "bottom", 0700), 0);
    EXPECT_EQ(found(drive.url("F"), "bottom").size(), 1U);
    ::unlinkat(folder.get(), "bottom", AT_REMOVEDIR);
    for (int depth = 0; depth < kDepth; ++depth) { // no path is short enough for others to clean up
        folder = FileDescriptor(::openat(folder.get(), "..", O_RDONLY | O_DIRECTORY));
        ::unlinkat(folder.get(), name.c_str(), AT_REMOVEDIR);
    }
}

TEST_F(FolderSearchTest, EndsWhenItIsDestroyed)
{
    for (int number = 0; number < 400; ++number)
        drive.file("F/" + std::to_string(number % 20) + "/Item " + std::to_string(number));
    for (int round = 0; round < 50; ++round) {
        std::unique_ptr<FolderSearch> search;
        search = platform.services().folders.search(
            {drive.url("F")}, "item",
            {.found = [&](const auto&) { search.reset(); }, .finished = [&] { FAIL() << "after its end"; }});
        EXPECT_TRUE(platform.runUntil([&] { return !search; }));
    }
}

} // namespace
} // namespace tessel
