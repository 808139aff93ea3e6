#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/files/FileDescriptor.h"
#include "tests/support/ListingPlatform.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/resource.h>
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
    Follower(ListingPlatform& platform, const URL& folder) : platform_(platform)
    {
        reading = platform.reader->read(
            folder, {.firstRows = [this](FolderTable table) { firstRows = namesOf(table); },
                     .complete =
                         [this](FolderTable table) {
                             rows = std::move(table);
                             isComplete = true;
                         },
                     .changed = [this](const auto& changes) { (void)rows.apply(changes, platform_.text); },
                     .replaced =
                         [this](FolderTable table) {
                             (void)rows.replaceWith(std::move(table), platform_.text);
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
        const auto index = rows.find(name, platform_.text);
        return index ? rows.entry(*index) : FolderEntry{.size = -2};
    }
    bool waitUntilComplete()
    {
        return platform_.waitUntil([this] { return isComplete; });
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
    ListingPlatform& platform_;
};

class FolderReaderTest : public testing::Test {
protected:
    /// The folder as another program sees it, in the list's order.
    [[nodiscard]] std::vector<std::string> onDisk(const URL& folder) const
    {
        std::vector<std::string> names;
        for (const auto& item : fs::directory_iterator(folder.path()))
            names.push_back(item.path().filename());
        std::sort(names.begin(), names.end(),
                  [&](const auto& left, const auto& right) { return platform.text.compareNames(left, right) < 0; });
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

    ListingPlatform platform;
    TemporaryDrive& drive = platform.drive;
};

TEST_F(FolderReaderTest, ListsItemsOfEveryKindInNaturalOrderWithTheirAttributes)
{
    drive.tree("F/Folder/ F/Slides.deck/ F/Link->Folder F/.hidden F/.config/");
    drive.file("F/File 10.txt");
    drive.file("F/File 9.txt", "1234");
    Follower list(platform, drive.url("F"));
    ASSERT_TRUE(list.waitUntilComplete());
    EXPECT_THAT(list.names(), ElementsAre("File 9.txt", "File 10.txt", "Folder", "Link", "Slides.deck"));
    EXPECT_EQ(list.entry("File 9.txt").size, 4);
    EXPECT_GT(list.entry("File 9.txt").modificationTime, 0);
    EXPECT_EQ(list.entry("Folder").kind, EntryKind::Folder);
    EXPECT_EQ(list.entry("Slides.deck").kind, EntryKind::Package);
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
        ASSERT_TRUE(platform.waitUntil([&] { return list.failure.has_value(); }));
        EXPECT_FALSE(list.isComplete);
        EXPECT_THAT(list.failure->description, HasSubstr(name));
    }
}

// The super-user may read everything: a child process becomes somebody else first.
TEST(FolderReaderPermissionTest, FailsForAFolderThatMayNotBeRead)
{
    const TemporaryDrive drive;
    const auto folder = drive.folder("Closed");
    fs::permissions(drive.url().path(), fs::perms::all);
    fs::permissions(folder.path(), fs::perms::owner_exec);
    const auto refused = [&] {
        ListingPlatform platform;
        Follower list(platform, folder);
        return platform.waitUntil([&] { return list.failure.has_value(); }) && !list.isComplete &&
               list.failure->code == ErrorCode::kReadNoPermission;
    };
    const auto child = ::fork();
    if (child == 0)
        ::_exit((::geteuid() != 0 || ::seteuid(65534) == 0) && refused() ? 0 : 1);
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
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
        EXPECT_TRUE(platform.waitUntil([&] {
            return follower->names() == std::vector<std::string>{"Grows", "New", "Sub"};
        }));
        EXPECT_TRUE(platform.waitUntil([&] { return follower->entry("Grows").size == 5; }));
    }
}

TEST_F(FolderReaderTest, EqualsTheFolderAfterABurstOfChanges)
{
    for (int number = 0; number < 2000; ++number)
        drive.file("F/Old " + std::to_string(number));
    Follower list(platform, drive.url("F"));
    const auto folder = drive.url("F");
    std::thread other([&] { // from before the listing is complete
        for (int number = 0; number < 10'000; ++number) {
            const auto name = folder.path() + "/Item " + std::to_string(number);
            ::close(::creat(name.c_str(), 0600));
            if (number % 3 == 0)
                fs::remove(name);
            else if (number % 3 == 1)
                fs::rename(name, folder.path() + "/Renamed " + std::to_string(number));
            if (number % 7 == 0)
                fs::remove(folder.path() + "/Old " + std::to_string(number));
        }
    });
    other.join();
    const auto expected = onDisk(folder);
    EXPECT_TRUE(platform.waitUntil([&] { return list.isComplete && list.names() == expected; }));
}

TEST(FolderReaderOverflowTest, ReadsTheFolderAnewWhenMoreHasChangedThanIsKept)
{
    ListingPlatform platform(10);
    platform.drive.file("F/first");
    Follower list(platform, platform.drive.url("F"));
    ASSERT_TRUE(list.waitUntilComplete());
    for (int number = 0; number < 300; ++number)
        platform.drive.file("F/" + std::to_string(number), "x");
    ASSERT_TRUE(platform.waitUntil([&] { return list.rows.size() == 301 && list.entry("299").size == 1; }));
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
        ASSERT_TRUE(platform.waitUntil([&] { return list.removals > 0; })) << path;
        platform.mainQueue().runReady();
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
    EXPECT_TRUE(platform.waitUntil([&] { return !list.rows.empty(); }));
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
    EXPECT_TRUE(platform.waitUntil([&] { return list.entry("Cloud").size == 2; }));
    placeholder(drive.url("F/Cloud"), 300);
    fs::remove(drive.url("F/Cloud").path());
    EXPECT_TRUE(platform.waitUntil([&] { return list.entry("Cloud").size == 300; }));
    fs::remove(placeholderURL(drive.url("F/Cloud")).path());
    EXPECT_TRUE(platform.waitUntil([&] { return list.names() == std::vector<std::string>{"Both"}; }));
}

TEST_F(FolderReaderTest, FetchesDetailsOfWhatIsLookedAt)
{
    drive.tree("F/Sub/a F/Sub/b F/Sub/.hidden");
    drive.file("F/Slides.deck/one/part", "12345");
    drive.file("F/Slides.deck/.index", "123");
    drive.file("F/Alias.desktop", "[Desktop Entry]\nType=Link\nURL=file:///\n");
    placeholder(drive.url("F/Sub/b"), 1);
    placeholder(drive.url("F/Sub/c"), 1);
    platform.cloud.tagsOfAll = {"Red"};
    Follower list(platform, drive.url("F"));
    ASSERT_TRUE(list.waitUntilComplete());
    list.reading->fetchDetails({drive.url("F/Sub"), drive.url("F/Slides.deck"), drive.url("F/Alias.desktop")});
    EXPECT_TRUE(list.reading->isFetchingDetails());
    ASSERT_TRUE(platform.waitUntil([&] { return !list.reading->isFetchingDetails(); }));
    EXPECT_EQ(list.details[drive.url("F/Sub")].itemCount, 3U);
    EXPECT_THAT(list.details[drive.url("F/Sub")].tags, ElementsAre("Red"));
    EXPECT_EQ(list.details[drive.url("F/Slides.deck")].packageSize, 8U);
    EXPECT_TRUE(list.details[drive.url("F/Alias.desktop")].isAliasFile);
}

TEST_F(FolderReaderTest, LooksAtAFolderNowAndThenWhenItCannotBeWatched)
{
    rlimit usual{};
    ::getrlimit(RLIMIT_NOFILE, &usual);
    const rlimit none{0, usual.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &none);
    platform.makeReader(); // no descriptor is left for inotify
    ::setrlimit(RLIMIT_NOFILE, &usual);

    Follower list(platform, drive.folder("F"));
    ASSERT_TRUE(list.waitUntilComplete());
    EXPECT_THAT(platform.log->lines(), Contains(HasSubstr("No watch left for folder")));
    drive.file("F/New");
    EXPECT_TRUE(platform.waitUntil([&] { return list.names() == std::vector<std::string>{"New"}; }));
    fs::remove_all(drive.url("F").path());
    EXPECT_TRUE(platform.waitUntil([&] { return list.removals == 1; }));
}

// At every moment of a reading: before it begins, half-way, while changes and details come.
TEST_F(FolderReaderTest, TellsNothingAfterItWasDestroyed)
{
    for (int number = 0; number < 600; ++number)
        drive.file("F/Item " + std::to_string(number));
    bool isDestroyed = false;
    int toldTooLate = 0;
    const auto tell = [&] { toldTooLate += isDestroyed; };
    for (int round = 0; round < 150; ++round) {
        isDestroyed = false;
        auto reading = platform.reader->read(drive.url("F"), {.firstRows = [&](FolderTable) { tell(); },
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
            platform.mainQueue().runReady();
        reading.reset();
        isDestroyed = true;
        platform.mainQueue().runReady();
    }
    platform.reader.reset(); // with readings begun and ended a moment ago
    platform.mainQueue().runReady();
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
        EXPECT_TRUE(platform.waitUntil([&] { return list.failure || list.removals == 1; }));
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
        const auto search = platform.reader->search(folder, query, client);
        EXPECT_TRUE(platform.waitUntil([&] { return finished; }));
        std::sort(paths.begin(), paths.end());
        return paths;
    }
};

TEST_F(FolderSearchTest, FindsVisibleItemsAtAnyDepth)
{
    drive.tree("F/plan.txt F/Deep/er/PLAN F/Deep/other F/plan.deck/plan F/.plan F/.h/plan F/link-to-plan->Deep");
    drive.file("F/Deep/pla\u0301n");
    placeholder(drive.url("F/Deep/plan in the cloud"), 1);
    EXPECT_THAT(found(drive.url("F"), "Plan"), ElementsAre("Deep/er/PLAN", "Deep/plan in the cloud", "Deep/pla\u0301n",
                                                           "link-to-plan", "plan.deck", "plan.txt"));
    EXPECT_THAT(found(drive.url("Nothing"), "plan"), IsEmpty());
}

TEST_F(FolderSearchTest, ReachesTheBottomOfATreeDeeperThanAnyPath)
{
    constexpr int kDepth = 1000;
    const std::string name(20, 'd');
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
        search = platform.reader->search(
            drive.url("F"), "item",
            {.found = [&](const auto&) { search.reset(); }, .finished = [&] { FAIL() << "after its end"; }});
        EXPECT_TRUE(platform.waitUntil([&] { return !search; }));
    }
}

} // namespace
} // namespace tessel
