#include "platform/linux/search/DriveSearch.h"
#include "platform/base/Platform.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/search/DriveIndexer.h"
#include "tests/support/InstalledPlatform.h"
#include "tests/support/OtherProcess.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <random>
#include <sys/xattr.h>
#include <thread>

namespace tessel {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Names = std::vector<std::string>;

class DriveSearchTest : public testing::Test {
protected:
    [[nodiscard]] Names find(std::vector<std::string> words)
    {
        std::promise<Names> told;
        search.find(std::move(words), [&](Names found) { told.set_value(std::move(found)); });
        Names names;
        for (const auto& document : search.documents(told.get_future().get()))
            names.emplace_back(document.url.lastPathComponent());
        return names;
    }

    /// As the program does some seconds after its start.
    void beginToKeep() { platform.turn(3); }

    /// The time until a question has this answer, in which nobody looks at the drive but the search itself.
    [[nodiscard]] bool comesToFind(const std::string& word, const Names& names)
    {
        const auto end = std::chrono::steady_clock::now() + 5s;
        while (find({word}) != names) {
            if (std::chrono::steady_clock::now() > end)
                return false;
            std::this_thread::yield();
        }
        return true;
    }

    [[nodiscard]] bool hasLogged(const std::string& part) const
    {
        return std::ranges::any_of(platform.log->lines(),
                                   [&](const auto& line) { return line.find(part) != std::string::npos; });
    }

    void setTags(const URL& url, std::string_view tags)
    {
        ASSERT_EQ(::setxattr(url.path().c_str(), "user.xdg.tags", tags.data(), tags.size(), 0), 0);
    }

    void placeInTheCloud(const URL& url)
    {
        PlaceholderRecord record;
        record.name = url.lastPathComponent();
        record.type = "public.data";
        record.identifier = "x";
        ASSERT_FALSE(writePlaceholder(url, record));
    }

    InstalledPlatform platform;
    const TemporaryDrive& drive = platform.drive;
    const TemporaryDrive home;
    const URL file = home.url("search.sqlite");
    const DriveSearch::Services services{platform.services().mainQueue, platform.services().log,
                                         platform.services().types};
    DriveSearch search{file, {drive.url()}, services};
};

TEST_F(DriveSearchTest, FindsNamesTagsAndWhatIsNotOnTheDevice)
{
    drive.tree("Work/Deep/Annual_Report.txt Work/Résumé.pdf Album.lookbook/inside.png .hidden/secret.txt");
    setTags(drive.file("plain.txt"), "Important");
    drive.file("Not \xff UTF-8.txt");
    placeInTheCloud(drive.url("Work/Contract.pdf"));
    search.refresh();
    EXPECT_THAT(find({"rep"}), ElementsAre("Annual_Report.txt"));
    EXPECT_THAT(find({"RESUME"}), ElementsAre("Résumé.pdf"));
    EXPECT_THAT(find({"imp"}), ElementsAre("plain.txt"));
    EXPECT_THAT(find({"contr", "pdf"}), ElementsAre("Contract.pdf"));
    EXPECT_THAT(find({"work"}), ElementsAre("Work"));
    EXPECT_THAT(find({"utf"}), ElementsAre("Not \xff UTF-8.txt"));
    EXPECT_THAT(find({"inside"}), IsEmpty());
    EXPECT_THAT(find({"secret"}), IsEmpty());
}

TEST_F(DriveSearchTest, TakesNoWordForAnOperator)
{
    drive.file("a or b near.txt");
    drive.file("zebra.txt", "text of near things");
    search.refresh();
    for (const std::string& odd : {std::string(), std::string("\""), std::string("*"), std::string("a\" OR z"),
                                   std::string("-"), std::string("-zebra* NOT"), std::string("name:x"),
                                   std::string("' OR 1"), std::string("\0", 1), std::string("NEAR(a b)\0\x01", 11)})
        EXPECT_THAT(find({odd}), IsEmpty()) << odd;
    EXPECT_THAT(find({std::string("\x02near\0", 6)}), ElementsAre("a or b near.txt", "zebra.txt"));
    EXPECT_THAT(find({"\"near\"", "(", "*"}), ElementsAre("a or b near.txt", "zebra.txt"));
    EXPECT_THAT(find({std::string(10'000, 'n')}), IsEmpty());
    EXPECT_THAT(find(Names(10'000, "near")), ElementsAre("a or b near.txt", "zebra.txt"));
    std::string accents;
    while (accents.size() < 10'000)
        accents += "\u00e9";
    EXPECT_THAT(find({accents}), IsEmpty());
}

TEST_F(DriveSearchTest, FindsTextsAfterNames)
{
    drive.file("a.txt", "the hippopotamus sleeps");
    drive.file("b Hippo.md", "nothing");
    drive.file("wide.txt", std::string("\xff\xfeh\0i\0p\0p\0o\0", 12));
    drive.file("latin.csv", "caf\xe9 au lait, tr\xe8s bon, d\xe9j\xe0 vu");
    drive.file("no text.txt", std::string("hippo\0\x01\x02\x03\0\0\0\0\x04\x05", 15));
    drive.file("code.cpp", "int hippoCount;");
    drive.file("picture.png", "hippo");
    drive.file("long.log", std::string(256 * 1024, ' ') + "hippo");
    search.refresh();
    const auto found = find({"hippo"});
    ASSERT_FALSE(found.empty());
    EXPECT_EQ(found.front(), "b Hippo.md");
    EXPECT_THAT(found, UnorderedElementsAre("b Hippo.md", "a.txt", "wide.txt", "code.cpp"));
    EXPECT_THAT(find({"deja"}), ElementsAre("latin.csv"));
    EXPECT_THAT(find({"sleep", "hippo"}), ElementsAre("a.txt"));
}

// A moved document has the time and the size that it had: who wrote over its content without changing them would not be
// found out. That it is found by the old words tells that it was not read again.
TEST_F(DriveSearchTest, ReadsNoTextAgainThatHasOnlyMoved)
{
    drive.tree("Old/ New/");
    const auto before = drive.file("Old/a.txt", "walrus");
    search.refresh();
    const auto time = fs::last_write_time(before.path());
    drive.file("New/b.txt", "walrus");
    fs::rename(before.path(), drive.url("New/a.txt").path());
    std::ofstream(drive.url("New/a.txt").path(), std::ios::in | std::ios::out) << "parrot";
    fs::last_write_time(drive.url("New/a.txt").path(), time);
    search.refresh();
    EXPECT_THAT(find({"walrus"}), UnorderedElementsAre("a.txt", "b.txt"));
    fs::remove(drive.url("New/a.txt").path());
    placeInTheCloud(drive.url("New/b.txt"));
    fs::remove(drive.url("New/b.txt").path());
    search.refresh();
    EXPECT_THAT(find({"walrus"}), IsEmpty());
    EXPECT_THAT(find({"b"}), ElementsAre("b.txt"));
}

TEST_F(DriveSearchTest, FollowsWhatComesAndGoesWhileItRuns)
{
    drive.tree("A/one.txt A/B/two.txt X/lion.txt Y/tiger.txt X/In/deer.txt Y/In/seal.txt");
    beginToKeep();
    ASSERT_TRUE(comesToFind("two", {"two.txt"}));
    drive.tree("New/Deep/eagle.txt");
    EXPECT_TRUE(comesToFind("eagle", {"eagle.txt"}));
    std::ofstream(drive.url("New/Deep/eagle.txt").path()) << "falcon";
    EXPECT_TRUE(comesToFind("falcon", {"eagle.txt"}));
    setTags(drive.url("A/one.txt"), "Urgent");
    EXPECT_TRUE(comesToFind("urg", {"one.txt"}));
    fs::rename(drive.url("A/B").path(), drive.url("C").path());
    EXPECT_TRUE(comesToFind("B", {}));
    drive.file("C/three.txt");
    EXPECT_TRUE(comesToFind("three", {"three.txt"}));
    EXPECT_THAT(find({"two"}), ElementsAre("two.txt"));
    // Two folders change places.
    fs::rename(drive.url("X").path(), drive.url("Z").path());
    fs::rename(drive.url("Y").path(), drive.url("X").path());
    fs::rename(drive.url("Z").path(), drive.url("Y").path());
    drive.file("X/In/whale.txt");
    EXPECT_TRUE(comesToFind("whale", {"whale.txt"}));
    fs::remove(drive.url("Y/In/deer.txt").path());
    EXPECT_TRUE(comesToFind("deer", {}));
    EXPECT_THAT(find({"seal"}), ElementsAre("seal.txt"));
    EXPECT_THAT(find({"in"}), ElementsAre("In", "In"));
    // A document goes to the cloud and comes back.
    placeInTheCloud(drive.url("New/Deep/eagle.txt"));
    fs::remove(drive.url("New/Deep/eagle.txt").path());
    EXPECT_TRUE(comesToFind("falcon", {}));
    EXPECT_THAT(find({"eagle"}), ElementsAre("eagle.txt"));
    drive.file("New/Deep/eagle.txt", "falcon");
    fs::remove(placeholderURL(drive.url("New/Deep/eagle.txt")).path());
    EXPECT_TRUE(comesToFind("falcon", {"eagle.txt"}));
    fs::rename(drive.url("C").path(), home.url("Out").path());
    EXPECT_TRUE(comesToFind("three", {}));
    EXPECT_THAT(find({"two"}), IsEmpty());
}

TEST_F(DriveSearchTest, FindsOutLaterWhatItCannotWatch)
{
    drive.tree("A/1.txt B/2.txt C/3.txt D/4.txt");
    auto index = SearchIndex::open(file, services.log);
    ASSERT_TRUE(index);
    FolderWatches watches(services.log, 2);
    const std::atomic<bool> ends = false;
    DriveIndexer indexer(index.value(), watches, {drive.url()}, {services.log, services.types, ends});
    const auto work = [&] {
        while (indexer.step()) {
        }
    };
    indexer.lookAtAll(DriveIndexer::Look::AtItems);
    work();
    EXPECT_TRUE(watches.isIncomplete());
    const auto lines = platform.log->lines();
    EXPECT_EQ(std::ranges::count_if(lines, [](const auto& line) { return line.find("2 folders are watched") == 0; }),
              1);
    for (const auto* folder : {"A", "B", "C", "D"})
        drive.file(std::string(folder) + "/owl.txt");
    const auto found = [&] { return index.value().find({"owl"}, 10).size(); };
    indexer.lookAtAll(DriveIndexer::Look::AtChangedFolders);
    work();
    EXPECT_EQ(found(), 3U);
    watches.wait(-1, 1000);
    watches.wait(-1, 1000);
    const auto news = watches.takeNews();
    ASSERT_TRUE(news);
    indexer.take(*news);
    work();
    EXPECT_EQ(found(), 4U);
}

// Whatever the index has become, the search goes on, and finds everything after the next look.
TEST_F(DriveSearchTest, BeginsAgainWithADamagedIndex)
{
    for (int n = 0; n < 300; ++n)
        drive.file("Plan " + std::to_string(n) + ".txt", "words of plan" + std::to_string(n));
    search.refresh();
    const auto sound = home.read("search.sqlite");
    std::mt19937 random(7);
    for (int round = 0; round < 24; ++round) {
        auto bytes = sound;
        if (round % 2 == 0)
            bytes.resize(random() % bytes.size());
        else
            std::ranges::generate_n(bytes.begin() + static_cast<long>(random() % (bytes.size() - 20'000)), 20'000,
                                    [&] { return static_cast<char>(random()); });
        home.file("search.sqlite", bytes);
        DriveSearch next(file, {drive.url()}, services);
        next.refresh();
        (void)find({"plan"}); // damage that only questions meet
        (void)find({"words"});
        next.refresh();
        for (const int n : {0, 150, 299}) {
            EXPECT_THAT(find({"plan", std::to_string(n)}), ElementsAre("Plan " + std::to_string(n) + ".txt")) << round;
            EXPECT_THAT(find({"plan" + std::to_string(n)}), ElementsAre("Plan " + std::to_string(n) + ".txt")) << round;
        }
    }
    EXPECT_TRUE(hasLogged("The search's index is set aside and made anew: It is damaged"));
    EXPECT_TRUE(fs::exists(file.path() + ".damaged"));
    fs::resize_file(file.path(), std::uintmax_t{5} << 30);
    search.refresh();
    EXPECT_TRUE(hasLogged("The search's index is set aside and made anew: It is too large"));
    EXPECT_THAT(find({"plan", "299"}), ElementsAre("Plan 299.txt"));
}

// Another program that keeps the same index goes on meanwhile, or is killed somewhere on its way.
TEST_F(DriveSearchTest, SharesItsIndexWithAnotherProgramThatMayDie)
{
    for (int n = 0; n < 1000; ++n)
        drive.file("Folder " + std::to_string(n % 10) + "/Plan " + std::to_string(n) + ".txt", "words");
    for (int round = 0; round < 8; ++round) {
        for (const auto* suffix : {"", "-wal", "-shm"})
            fs::remove(file.path() + suffix);
        OtherProcess other([&](OtherProcess& process) {
            auto index = SearchIndex::open(file, services.log);
            FolderWatches watches(services.log);
            const std::atomic<bool> ends = false;
            DriveIndexer indexer(index.value(), watches, {drive.url()}, {services.log, services.types, ends});
            indexer.lookAtAll(DriveIndexer::Look::AtItems);
            process.meet();
            while (indexer.step()) {
            }
        });
        other.meet();
        const auto moment = std::chrono::steady_clock::now() + std::chrono::milliseconds(4 * round);
        while (round > 0 && std::chrono::steady_clock::now() < moment)
            std::this_thread::yield();
        if (round > 0)
            other.kill();
        search.refresh();
        EXPECT_TRUE(other.finish() || round > 0);
        EXPECT_EQ(find({"plan"}).size(), 100U) << round;
        EXPECT_THAT(find({"plan", "777"}), ElementsAre("Plan 777.txt")) << round;
    }
    EXPECT_FALSE(hasLogged("index"));
}

} // namespace
} // namespace tessel
