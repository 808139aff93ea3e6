#include "app/common/TesselDriveApp_StrataAdditions.h"
#include "platform/cloud/CloudService.h"
#include "platform/files/FileCoordinator.h"
#include "platform/files/FileManager.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/cloud/Database.h"
#include "platform/linux/cloud/DocumentMark.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/files/ExtendedAttributes.h"
#include "platform/log/UnifiedLog.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TemporaryDrive.h"

#include <gmock/gmock.h>

#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <filesystem>
#include <iterator>
#include <map>
#include <set>
#include <sstream>

namespace tessel {

namespace {

namespace fs = std::filesystem;
using ::testing::Contains;
using ::testing::HasSubstr;

constexpr const char* kTop = "home/Mobile Documents/orvane~Quillbox";

class DocumentIdentifiersTest : public ::testing::Test {
protected:
    DocumentIdentifiersTest()
    {
        folder.folder(kTop);
        folder.folder("home/Mobile Documents/orvane~Lookbook/Documents");
        start();
    }

    void start(std::optional<std::string> drive = {})
    {
        scope.reset();
        platform.reset();
        auto opened = LinuxPlatform::create({.home = folder.url("home").path(), .drive = drive, .locale = "en"});
        ASSERT_TRUE(opened) << opened.error().description;
        platform = std::move(opened.value());
        platform->services().log.addSink(log);
        scope.emplace(platform->services());
    }

    void startWithoutCatalog()
    {
        scope.reset();
        platform.reset();
        for (const auto* name : {"home/catalog.sqlite", "home/catalog.sqlite-wal", "home/catalog.sqlite-shm"})
            fs::remove(folder.url(name).path());
        start();
    }

    URL top(std::string_view path) const { return folder.url(kTop).appending(path); }
    URL document(std::string_view path, std::string_view content = "text") const
    {
        return folder.file(std::string(kTop) + '/' + std::string(path), content);
    }
    static std::optional<URL> find(std::int64_t identifier)
    {
        return tsd_URLFromDocumentID(std::to_string(identifier));
    }
    static void rename(const URL& from, const URL& to) { fs::rename(from.path(), to.path()); }
    /// As "cp --preserve=xattr".
    static URL copied(const URL& from, const URL& to)
    {
        fs::copy_file(from.path(), to.path(), fs::copy_options::overwrite_existing);
        if (const auto mark = extendedAttribute(from, kDocumentAttribute); mark && *mark)
            static_cast<void>(setExtendedAttribute(to, kDocumentAttribute, **mark));
        return to;
    }
    static void strip(const URL& url) { ::removexattr(url.path().c_str(), kDocumentAttribute); }

    TemporaryDrive folder;
    std::shared_ptr<LogCapture> log = std::make_shared<LogCapture>();
    std::unique_ptr<LinuxPlatform> platform;
    std::optional<platform::Scope> scope;
};

TEST_F(DocumentIdentifiersTest, FollowADocumentWhereverItIsMoved)
{
    const auto plan = document("Projects/Plan.txt");
    const auto identifier = tsd_DocumentID(plan);
    ASSERT_GT(identifier, 0);
    EXPECT_LE(identifier, 0xFFFF'FFFF);
    EXPECT_NE(tsd_DocumentID(document("Projects/Other.txt")), identifier);
    EXPECT_EQ(find(identifier), plan);

    rename(plan, top("Projects/Plan 2.txt"));
    EXPECT_EQ(find(identifier), top("Projects/Plan 2.txt"));
    rename(top("Projects"), top("Old"));
    strip(top("Old/Plan 2.txt"));
    EXPECT_EQ(find(identifier), top("Old/Plan 2.txt")) << "its file alone is enough";
    const auto library = folder.url("home/Mobile Documents/orvane~Lookbook/Documents/Plan.txt");
    rename(top("Old/Plan 2.txt"), library);
    EXPECT_EQ(tsd_DocumentID(library), identifier);
    EXPECT_EQ(find(identifier), library);
    EXPECT_GT(tsd_DocumentID(document("Old/Plan 2.txt")), 0);
    EXPECT_EQ(find(identifier), library) << "not what was made where it was";

    copied(library, top("Plan.txt")); // as a move between file systems does
    fs::remove(library.path());
    EXPECT_EQ(find(identifier), top("Plan.txt"));
    fs::remove(top("Plan.txt").path());
    EXPECT_EQ(find(identifier), std::nullopt);
    EXPECT_THAT(log->lines(), Contains(HasSubstr("resolving the document ID failed: 2 (No such file or directory)")));
}

// In the cloud it is another file, and renamed there one more. Whoever takes its old place is asked first.
TEST_F(DocumentIdentifiersTest, StayWithADocumentThatThisProgramGivesOtherFiles)
{
    const auto plan = document("Plan.txt");
    const auto identifier = tsd_DocumentID(plan);
    auto& files = platform->services().files;
    ASSERT_EQ(platform->services().cloud.evictDocument(plan), std::nullopt);
    ASSERT_EQ(files.moveItem(plan, top("Moved.txt")), std::nullopt);
    if (const auto mark = readDocumentMark(placeholderURL(top("Moved.txt"))); !mark || !*mark)
        GTEST_SKIP() << "this file system keeps no attributes";
    EXPECT_NE(tsd_DocumentID(document("Plan.txt", "another")), identifier);
    EXPECT_EQ(tsd_DocumentID(top("Moved.txt")), identifier);

    ASSERT_EQ(FileCoordinator().coordinateReading(top("Moved.txt"), ReadingOptions::None, [](const URL&) {}),
              std::nullopt);
    ASSERT_EQ(files.moveItem(top("Moved.txt"), top("Again.txt")), std::nullopt);
    EXPECT_NE(tsd_DocumentID(document("Moved.txt", "another")), identifier);
    EXPECT_EQ(find(identifier), top("Again.txt"));

    document("Folder/Letter.txt"); // which takes the place of one that is gone
    const auto letter = tsd_DocumentID(top("Folder/Letter.txt"));
    ASSERT_EQ(platform->services().cloud.evictDocument(top("Folder/Letter.txt")), std::nullopt);
    ASSERT_EQ(files.removeItem(plan, {}), std::nullopt);
    ASSERT_EQ(files.moveItem(top("Folder/Letter.txt"), plan), std::nullopt);
    EXPECT_EQ(tsd_DocumentID(plan), letter);
}

// Editors write a new file and rename it over the old one. Some keep the old one beside it, and some copy its
// attributes.
TEST_F(DocumentIdentifiersTest, StayWithADocumentThatIsSavedByReplacingItsFile)
{
    const auto plan = document("Plan.txt");
    const auto identifier = tsd_DocumentID(plan);
    for (int save = 0; save < 3; ++save) {
        rename(document("Plan.txt.new"), plan);
        EXPECT_EQ(save == 1 ? tsd_DocumentID(plan) : identifier, identifier);
        EXPECT_EQ(find(identifier), plan);
    }
    rename(plan, top("Plan.txt~"));
    rename(document("Plan.txt.new"), plan);
    EXPECT_EQ(tsd_DocumentID(plan), identifier);
    EXPECT_EQ(find(identifier), plan);
    EXPECT_NE(tsd_DocumentID(top("Plan.txt~")), identifier);

    rename(copied(plan, top("Plan.txt.new")), plan);
    EXPECT_EQ(tsd_DocumentID(plan), identifier);
}

TEST_F(DocumentIdentifiersTest, StayWithADocumentThatIsSavedByAnotherProgramAndThenMovedByThisOne)
{
    auto& files = platform->services().files;
    const auto plan = document("Plans/Plan.txt");
    const auto identifier = tsd_DocumentID(plan);
    rename(document("Plans/Plan.txt.new"), plan);
    ASSERT_EQ(files.moveItem(plan, top("Plans/Moved.txt")), std::nullopt);
    EXPECT_NE(tsd_DocumentID(document("Plans/Plan.txt", "another")), identifier);
    EXPECT_EQ(find(identifier), top("Plans/Moved.txt"));

    rename(document("Plans/Moved.txt.new"), top("Plans/Moved.txt"));
    ASSERT_EQ(files.moveItem(top("Plans"), top("Old")), std::nullopt);
    EXPECT_NE(tsd_DocumentID(document("Plans/Moved.txt", "a third")), identifier);
    EXPECT_EQ(find(identifier), top("Old/Moved.txt"));
}

TEST_F(DocumentIdentifiersTest, NeverPassToACopy)
{
    const auto plan = document("Plan.txt");
    const auto identifier = tsd_DocumentID(plan);
    const auto copy = copied(plan, top("Copy.txt"));
    const auto own = tsd_DocumentID(copy);
    EXPECT_NE(own, identifier);

    rename(plan, top("Moved.txt")); // and a copy takes its place
    copied(top("Moved.txt"), plan);
    EXPECT_NE(tsd_DocumentID(plan), identifier);
    EXPECT_EQ(tsd_DocumentID(top("Moved.txt")), identifier);
    EXPECT_EQ(find(identifier), top("Moved.txt"));
    EXPECT_EQ(find(own), copy);
    fs::create_hard_link(top("Moved.txt").path(), top("Second name.txt").path());
    EXPECT_EQ(tsd_DocumentID(top("Second name.txt")), identifier) << "the very same file";
    EXPECT_EQ(find(identifier), top("Moved.txt"));
}

TEST_F(DocumentIdentifiersTest, AreNotTakenForThoseOfAnotherDocumentThatReplacedTheirs)
{
    const auto plan = document("Plan.txt");
    const auto identifier = tsd_DocumentID(plan);
    const auto other = tsd_DocumentID(document("Other.txt"));
    rename(top("Other.txt"), plan);
    EXPECT_EQ(find(other), plan);
    EXPECT_EQ(find(identifier), std::nullopt);
    EXPECT_THAT(log->lines(), Contains("(TSD)[ERROR] URLWithDocumentIDCheck (*) document IDs didn't match (" +
                                       std::to_string(other) + " v/s " + std::to_string(identifier) + ")"));

    const auto last = tsd_DocumentID(document("Last.txt"));
    fs::remove(top("Last.txt").path());
    for (int i = 0; i < 5; ++i) // file systems use the numbers of removed files again
        EXPECT_NE(tsd_DocumentID(document("New " + std::to_string(i))), last);
    EXPECT_EQ(find(last), std::nullopt);
}

TEST_F(DocumentIdentifiersTest, SurviveTheLossOfTheirMarksOrOfTheCatalogue)
{
    std::map<std::string, std::int64_t> identifiers;
    for (const std::string name : {"a.txt", "b.txt", "c.txt"})
        identifiers[name] = tsd_DocumentID(document("Deep/" + name));
    if (const auto mark = readDocumentMark(top("Deep/a.txt")); !mark || !*mark)
        GTEST_SKIP() << "this file system keeps no attributes";
    copied(top("Deep/a.txt"), top("A copy that is read first.txt"));
    strip(top("Deep/b.txt"));
    EXPECT_EQ(tsd_DocumentID(top("Deep/b.txt")), identifiers["b.txt"]);

    startWithoutCatalog();
    EXPECT_NE(tsd_DocumentID(top("A copy that is read first.txt")), identifiers["a.txt"]);
    for (const auto& [name, identifier] : identifiers) {
        EXPECT_EQ(find(identifier), top("Deep/" + name));
        EXPECT_EQ(tsd_DocumentID(top("Deep/" + name)), identifier);
    }
    ASSERT_FALSE(setExtendedAttribute(document("odd.txt"), kDocumentAttribute, "99999999999 x"));
    EXPECT_GT(tsd_DocumentID(top("odd.txt")), 0);
    EXPECT_LE(tsd_DocumentID(top("odd.txt")), 0xFFFF'FFFF);
}

TEST_F(DocumentIdentifiersTest, AreGivenInAHomeThatAnEarlierVersionMade)
{
    const auto token = platform->services().cloud.identityToken();
    scope.reset();
    platform.reset();
    {
        auto database = Database::open(folder.url("home/catalog.sqlite"), Database::Missing::Fail);
        ASSERT_TRUE(database->execute("DROP TABLE documents; DROP TABLE documentChanges; DROP TABLE scannedDrives;"
                                      "PRAGMA user_version = 1"));
    }
    start();
    EXPECT_EQ(platform->services().cloud.identityToken(), token);
    const auto plan = document("Plan.txt");
    EXPECT_EQ(find(tsd_DocumentID(plan)), plan);
}

TEST_F(DocumentIdentifiersTest, BelongToDocumentsThatAreNotOnTheDevice)
{
    const auto plan = top("Plan.txt");
    const auto hidden = placeholderURL(plan);
    ASSERT_FALSE(writePlaceholder(plan, {"Plan.txt", 4, {}, Date{5}, "public.plain-text", "id", {}}));
    const auto identifier = tsd_DocumentID(plan);
    EXPECT_GT(identifier, 0);
    EXPECT_EQ(tsd_DocumentID(hidden), identifier);
    EXPECT_EQ(find(identifier), plan);

    document("Plan.txt"); // downloaded
    fs::remove(hidden.path());
    EXPECT_EQ(find(identifier), plan);
    EXPECT_EQ(tsd_DocumentID(plan), identifier);
    EXPECT_EQ(tsd_DocumentID(top("nothing.txt")), 0);
    EXPECT_EQ(tsd_DocumentID(folder.file("outside.txt")), 0);
    EXPECT_EQ(tsd_DocumentID(folder.link(std::string(kTop) + "/link", "Plan.txt")), 0);
}

TEST_F(DocumentIdentifiersTest, LeadOnlyIntoTheDriveThatIsShown)
{
    const auto identifier = tsd_DocumentID(document("Plan.txt"));
    folder.folder("mine");
    const auto mine = copied(top("Plan.txt"), folder.url("mine/Plan.txt"));
    start(folder.url("mine").path());
    EXPECT_EQ(find(identifier), std::nullopt);
    const auto own = tsd_DocumentID(mine);
    EXPECT_NE(own, identifier);
    EXPECT_EQ(find(own), mine);

    rename(folder.url("mine"), folder.url("renamed"));
    start(folder.url("renamed").path());
    EXPECT_EQ(tsd_DocumentID(folder.url("renamed/Plan.txt")), own);
    start();
    EXPECT_EQ(find(identifier), top("Plan.txt"));
    EXPECT_EQ(find(own), std::nullopt);
}

TEST_F(DocumentIdentifiersTest, AreTheSameForAllProgramsThatAskAtOnce)
{
    constexpr int kDocuments = 200;
    constexpr int kPrograms = 4;
    for (int i = 0; i < kDocuments; ++i)
        document(std::to_string(i));
    scope.reset();
    platform.reset();
    int go[2];
    ASSERT_EQ(::pipe(go), 0);
    const auto answersOf = [](int program) { return "answers " + std::to_string(program); };
    for (int program = 0; program < kPrograms; ++program)
        if (::fork() == 0) {
            ::close(go[1]);
            start();
            char nothing = 0;
            EXPECT_EQ(::read(go[0], &nothing, 1), 0); // waits until all are told to go
            std::ostringstream answers;
            for (int i = 0; i < kDocuments; ++i)
                answers << tsd_DocumentID(top(std::to_string(i))) << '\n';
            folder.file(answersOf(program), answers.str());
            ::_exit(0);
        }
    ::close(go[0]);
    ::close(go[1]);
    while (::wait(nullptr) > 0) {
    }
    std::istringstream answers(folder.read(answersOf(0)));
    const std::set<std::string> identifiers{std::istream_iterator<std::string>(answers), {}};
    EXPECT_EQ(identifiers.size(), static_cast<std::size_t>(kDocuments));
    EXPECT_FALSE(identifiers.contains("0"));
    for (int program = 1; program < kPrograms; ++program)
        EXPECT_EQ(folder.read(answersOf(program)), folder.read(answersOf(0)));
}

} // namespace

} // namespace tessel
