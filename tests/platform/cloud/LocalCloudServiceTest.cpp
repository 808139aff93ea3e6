#include "platform/linux/LinuxPlatform.h"

#include "platform/base/NotificationCenter.h"
#include "platform/cloud/CloudService.h"
#include "platform/files/FileManager.h"
#include "platform/files/ResourceValues.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/files/ExtendedAttributes.h"
#include "platform/log/UnifiedLog.h"
#include "platform/run/MainQueue.h"
#include "tests/support/TemporaryDrive.h"

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>

namespace tessel {

namespace {

namespace fs = std::filesystem;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Key;
using ::testing::UnorderedElementsAre;

constexpr const char* kRoot = "home/Mobile Documents";
constexpr const char* kTop = "home/Mobile Documents/orvane~Quillbox";

/// Every file, folder and link below a folder with what tells it from another: kind, size, date, a link's text.
std::map<std::string, std::string> treeOf(const URL& folder)
{
    std::map<std::string, std::string> tree;
    for (const auto& entry : fs::recursive_directory_iterator(folder.path())) {
        const bool isFile = entry.is_regular_file() && !entry.is_symlink();
        const auto date = entry.is_symlink() ? fs::file_time_type() : entry.last_write_time();
        tree[entry.path().lexically_relative(folder.path()).string()] =
            (entry.is_symlink() ? "link " + fs::read_symlink(entry).string()
             : isFile           ? "file"
                                : "folder") +
            ' ' + std::to_string(isFile ? entry.file_size() : 0) + ' ' +
            std::to_string(date.time_since_epoch().count());
    }
    return tree;
}

/// Works as a user without rights, as the tests themselves may run with all of them.
class Unprivileged {
public:
    Unprivileged() : before_(::geteuid()) { EXPECT_TRUE(before_ != 0 || ::seteuid(65534) == 0); }
    ~Unprivileged() { EXPECT_EQ(::seteuid(before_), 0); }
    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;

private:
    const uid_t before_;
};

class LocalCloudServiceTest : public ::testing::Test {
protected:
    std::unique_ptr<LinuxPlatform> start(const std::string& home = "home", std::optional<std::string> drive = {})
    {
        auto platform = LinuxPlatform::create({folder.url(home).path(), std::move(drive), nullptr, "en"});
        EXPECT_TRUE(platform) << (platform ? "" : platform.error().description);
        return platform ? std::move(platform.value()) : nullptr;
    }

    std::string refusal(const std::string& home, std::optional<std::string> drive = {})
    {
        const auto platform = LinuxPlatform::create({home, std::move(drive), nullptr, "en"});
        return platform ? "started" : platform.error().description;
    }

    URL top(const std::string& path = {}) const { return folder.url(kTop).appending(path); }

    TemporaryDrive folder;
};

std::vector<std::string> identifiers(const CloudService& cloud)
{
    std::vector<std::string> identifiers;
    for (const auto& library : cloud.libraries())
        identifiers.push_back(library->identifier);
    return identifiers;
}

} // namespace

TEST_F(LocalCloudServiceTest, RemembersWhoIsSignedIn)
{
    const auto first = start()->services().cloud.identityToken();
    ASSERT_TRUE(first);
    EXPECT_EQ(first->bytes.size(), 16U);
    EXPECT_EQ(start()->services().cloud.identityToken(), first);

    ASSERT_FALSE(start()->services().cloud.signIn("Мира"));
    const auto second = start()->services().cloud.identityToken();
    ASSERT_TRUE(second);
    EXPECT_NE(second, first);

    ASSERT_FALSE(start()->services().cloud.signOut());
    EXPECT_FALSE(start()->services().cloud.identityToken());
    ASSERT_FALSE(start()->services().cloud.signIn("Мира"));
    EXPECT_EQ(start()->services().cloud.identityToken(), second);
}

// Who listens reads the token at once, so the change must be stored when the notice comes, and the notice comes to the
// main queue, not into the middle of the caller.
TEST_F(LocalCloudServiceTest, AnnouncesAChangeOfIdentityOnTheMainQueue)
{
    const auto platform = start();
    const auto services = platform->services();
    std::vector<bool> signedIn;
    const auto observation = services.notifications.observe(
        kCloudIdentityChangedNotification, [&] { signedIn.push_back(services.cloud.identityToken().has_value()); });
    ASSERT_FALSE(services.cloud.signOut());
    EXPECT_THAT(signedIn, IsEmpty());
    services.mainQueue.runReady();
    ASSERT_FALSE(services.cloud.signIn("me"));
    services.mainQueue.runReady();
    EXPECT_THAT(signedIn, ElementsAre(false, true));
}

TEST_F(LocalCloudServiceTest, RefusesNamesThatNoAccountCanHave)
{
    const auto platform = start();
    auto& cloud = platform->services().cloud;
    const auto before = cloud.identityToken();
    for (const std::string& name : {std::string(), std::string("a\nb"), std::string("a\0", 2), std::string("\x7f"),
                                    std::string("\xC2\x85"), std::string("\xFF"), std::string(256, 'a')}) {
        const auto error = cloud.signIn(name);
        ASSERT_TRUE(error) << name;
        EXPECT_EQ(error->code, 2048);
        EXPECT_FALSE(error->description.empty());
    }
    EXPECT_EQ(cloud.identityToken(), before);
    EXPECT_FALSE(cloud.signIn(std::string(255, 'a')));
}

TEST_F(LocalCloudServiceTest, KnowsTheContainersOfTheHome)
{
    const auto platform = start();
    const auto& cloud = platform->services().cloud;
    const auto drive = cloud.defaultContainer();
    EXPECT_EQ(drive->identifier, "orvane.Quillbox");
    EXPECT_EQ(drive->localizedName, "Tessel Drive");
    EXPECT_EQ(drive->documentsURL, top());
    EXPECT_THAT(identifiers(cloud), UnorderedElementsAre("orvane.Lookbook", "orvane.Quillpad"));

    const auto library = folder.url(kRoot).appending("orvane~Quillpad/Documents");
    const auto quillpad = cloud.containerForURL(library.appending("Ideas.txt"));
    ASSERT_TRUE(quillpad);
    EXPECT_EQ(quillpad->localizedName, "Quillpad");
    EXPECT_EQ(quillpad->depthOption, "One");
    EXPECT_THAT(quillpad->owners, ElementsAre("orvane.Quillpad"));
    EXPECT_THAT(quillpad->documentTypes, Contains("public.plain-text"));
    EXPECT_TRUE(cloud.isContainerTopFolder(library));
    EXPECT_TRUE(cloud.isContainerTopFolder(top("../orvane~Quillpad/Documents")));
    EXPECT_FALSE(cloud.isContainerTopFolder(library.deletingLastPathComponent()));
    EXPECT_FALSE(cloud.isContainerTopFolder(top()));

    fs::remove_all(library.path());
    EXPECT_THAT(identifiers(cloud), ElementsAre("orvane.Lookbook"));
}

TEST_F(LocalCloudServiceTest, TellsWhatLiesInTheDrive)
{
    folder.folder("real");
    folder.link("linked", "real");
    folder.file("outside.txt");
    const auto platform = start("linked/home");
    const auto& cloud = platform->services().cloud;
    const std::string root = "real/home/Mobile Documents/";
    const std::string documents = root + "orvane~Quillbox/Documents/";
    folder.link(documents + "out", "../../../../..");
    folder.link(documents + "to library", "../../orvane~Lookbook/Documents");
    folder.link(documents + "to trash", "../.Trash");
    const auto inDrive = [&](const std::string& path) { return cloud.isInDrive(folder.url(path)); };

    for (const std::string path :
         {"orvane~Quillbox", "orvane~Quillbox/Documents/Plan.txt", "orvane~Quillbox/not there/yet",
          "orvane~Quillbox/Documents/to library", "orvane~Quillbox/Desktop/Plan", "orvane~Lookbook/Documents/new",
          "orvane~Quillbox/Documents/../../orvane~Quillpad/Documents"}) {
        EXPECT_TRUE(inDrive(root + path)) << path;
        EXPECT_TRUE(inDrive("linked/home/Mobile Documents/" + path)) << path;
    }
    for (const std::string& path : {std::string("outside.txt"), documents + "out/outside.txt", documents + "out",
                                    root + "orvane~Quillbox2", root + "orvane~Quillbox/..", root + "orvane~Lookbook",
                                    documents + "to library/../../..", std::string("real")})
        EXPECT_FALSE(inDrive(path)) << path;

    EXPECT_EQ(cloud.containerForURL(folder.url(documents + "out")), cloud.defaultContainer());
    EXPECT_EQ(cloud.containerForURL(folder.url(documents + "out/outside.txt")), nullptr);
    EXPECT_TRUE(cloud.isInTrash(folder.url(root + "orvane~Quillbox/.Trash/Old Draft.txt")));
    EXPECT_TRUE(cloud.isInTrash(folder.url(documents + "to trash/Old Draft.txt")));
    EXPECT_FALSE(cloud.isInTrash(folder.url(documents + "Plan.txt")));
}

TEST_F(LocalCloudServiceTest, ReadsTags)
{
    const auto platform = start();
    const auto& cloud = platform->services().cloud;
    const auto plan = top("Documents/Plan.txt");
    if (setExtendedAttribute(plan, "user.xdg.tags", " Work ,,\t, Важно,\xFF,with blank"))
        GTEST_SKIP() << "the file system keeps no attributes";
    EXPECT_THAT(cloud.tagNames(plan).value(), ElementsAre("Work", "Важно", "with blank"));
    EXPECT_THAT(cloud.tagNames(top("Documents/Notes.md")).value(), IsEmpty());
    EXPECT_THAT(cloud.tagNames(top("Documents/Contract.pdf")).value(), ElementsAre("Work"));
    EXPECT_FALSE(cloud.tagNames(top("Documents/gone.txt")));
}

TEST_F(LocalCloudServiceTest, MakesADamagedCatalogueAnewFromTheTree)
{
    auto before = start()->services().cloud.libraries();
    const auto rebuilt = [&](int number) {
        const auto platform = start();
        const auto libraries = platform->services().cloud.libraries();
        ASSERT_EQ(libraries.size(), before.size());
        for (std::size_t i = 0; i < libraries.size(); ++i) {
            EXPECT_EQ(libraries[i]->localizedName, before[i]->localizedName);
            EXPECT_EQ(libraries[i]->depthOption, before[i]->depthOption);
            EXPECT_EQ(libraries[i]->documentTypes, before[i]->documentTypes);
            EXPECT_EQ(libraries[i]->owners, before[i]->owners);
        }
        EXPECT_TRUE(platform->services().cloud.identityToken());
        EXPECT_TRUE(fs::exists(folder.url("home/catalog.sqlite.damaged-" + std::to_string(number)).path()));
    };

    folder.file("home/catalog.sqlite",
                "no database at all, though long enough to be taken for one" + std::string(2000, ' '));
    rebuilt(1);
    std::fstream(folder.url("home/catalog.sqlite").path()).seekp(4096) << std::string(3 * 4096, 'x');
    rebuilt(2);
    std::filesystem::remove(folder.url("home/catalog.sqlite").path());
    folder.folder("home/catalog.sqlite");
    rebuilt(3);
    std::filesystem::remove(folder.url("home/catalog.sqlite").path());
    ASSERT_EQ(::mkfifo(folder.url("home/catalog.sqlite").path().c_str(), 0600), 0);
    rebuilt(4);
    std::filesystem::remove(folder.url("home/catalog.sqlite").path());
    EXPECT_THAT(identifiers(start()->services().cloud), UnorderedElementsAre("orvane.Lookbook", "orvane.Quillpad"));
}

// SQLite makes files beside a database even to read it, which a full disk refuses as well: the user could not start to
// delete what fills it.
TEST_F(LocalCloudServiceTest, CanBeUsedWhereNothingCanBeWrittenAndChangesAgainWhenItCan)
{
    const auto token = start()->services().cloud.identityToken();
    const auto home = folder.url("home").path();
    const auto catalog = folder.url("home/catalog.sqlite").path();
    EXPECT_EQ(fs::status(catalog).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    fs::permissions(folder.url().path(), fs::perms::all);
    fs::permissions(home, fs::perms(0555));
    fs::permissions(catalog, fs::perms(0666));
    std::unique_ptr<LinuxPlatform> platform;
    {
        const Unprivileged user;
        platform = start();
        ASSERT_TRUE(platform);
        EXPECT_EQ(platform->services().cloud.identityToken(), token);
        const auto error = platform->services().cloud.signOut();
        ASSERT_TRUE(error);
        EXPECT_THAT(error->description, HasSubstr("Permission denied"));
        EXPECT_EQ(platform->services().cloud.identityToken(), token);
    }
    fs::permissions(home, fs::perms(0777));
    EXPECT_FALSE(platform->services().cloud.signOut());
    EXPECT_FALSE(platform->services().cloud.identityToken());
}

// Who were taken for signed out would lose what was open.
TEST_F(LocalCloudServiceTest, KeepsTheTokenWhileTheCatalogCannotBeRead)
{
    const auto platform = start();
    auto& cloud = platform->services().cloud;
    const auto token = cloud.identityToken();
    fs::resize_file(folder.url("home/catalog.sqlite").path(), 0);
    fs::resize_file(folder.url("home/catalog.sqlite-wal").path(), 0);
    std::fstream(folder.url("home/catalog.sqlite-shm").path()) << std::string(32768, 'x');
    EXPECT_EQ(cloud.identityToken(), token);
}

// The drive's file system is not mounted: an empty drive in its place would be taken for one whose documents were
// deleted. When it is back, so is everything.
TEST_F(LocalCloudServiceTest, NeverMakesAMissingRootAnew)
{
    start();
    fs::rename(folder.url(kRoot).path(), folder.url("elsewhere").path());
    EXPECT_THAT(identifiers(start()->services().cloud), IsEmpty());
    folder.file("home/catalog.sqlite", std::string(5000, 'x'));
    EXPECT_THAT(identifiers(start()->services().cloud), IsEmpty());
    EXPECT_FALSE(fs::exists(folder.url(kRoot).path()));

    fs::rename(folder.url("elsewhere").path(), folder.url(kRoot).path());
    EXPECT_THAT(identifiers(start()->services().cloud), UnorderedElementsAre("orvane.Lookbook", "orvane.Quillpad"));
}

TEST_F(LocalCloudServiceTest, ShowsABoundFolderAndAddsNothingToIt)
{
    folder.tree("mine/ mine/a.txt mine/Documents/ mine/.Trash/ mine/.Trash/old.txt");
    const auto before = treeOf(folder.url("mine"));
    {
        const auto platform = start("home", folder.url("mine").path());
        const auto& cloud = platform->services().cloud;
        EXPECT_EQ(cloud.defaultContainer()->documentsURL, folder.url("mine"));
        EXPECT_THAT(identifiers(cloud), IsEmpty());
        EXPECT_TRUE(cloud.isInDrive(folder.url("mine/a.txt")));
        EXPECT_TRUE(cloud.isInTrash(folder.url("mine/.Trash/old.txt")));
        EXPECT_FALSE(cloud.isInDrive(top()));
        EXPECT_FALSE(fs::exists(folder.url(kRoot).path()));
    }
    EXPECT_EQ(treeOf(folder.url("mine")), before);
    EXPECT_THAT(identifiers(start()->services().cloud), UnorderedElementsAre("orvane.Lookbook", "orvane.Quillpad"));
    EXPECT_THAT(identifiers(start("home", folder.url("mine").path())->services().cloud), IsEmpty());
}

TEST_F(LocalCloudServiceTest, MakesAnExampleDriveOnce)
{
    start();
    const auto tree = treeOf(folder.url(kRoot));
    for (const auto* path : {"Documents/Projects/Garden/Beds/Spring 2.txt", "Documents/Report.pdf", "Documents/Photos",
                             "Documents/Album.lookbook/album.json", "Desktop/Holiday Photos.desktop",
                             ".Trash/Old Draft.txt", "Documents/旅行の計画.txt", "Documents/Grüße 🎉.md"})
        EXPECT_THAT(tree, Contains(Key(std::string("orvane~Quillbox/") + path)));

    start();
    EXPECT_EQ(treeOf(folder.url(kRoot)), tree);
    fs::remove_all(top("Documents/Photos").path());
    start();
    EXPECT_FALSE(fs::exists(top("Documents/Photos").path()));
    fs::create_directories(folder.url("second/.example-drive/half of an example").path()); // interrupted
    start("second");
    EXPECT_EQ(treeOf(folder.url("second/Mobile Documents")).size(), tree.size());
    EXPECT_EQ(treeOf(folder.url("second/Mobile Documents"))["orvane~Quillbox/Documents/Plan.txt"],
              tree.at("orvane~Quillbox/Documents/Plan.txt"));
}

TEST_F(LocalCloudServiceTest, TheExampleHasEveryKindOfItem)
{
    const auto platform = start();
    const auto services = platform->services();
    for (const auto* path : {"Documents/Contract.pdf", "Documents/Photos/Forest 🌲.png"}) {
        const auto record = readPlaceholder(placeholderURL(top(path)));
        ASSERT_TRUE(record) << path;
        EXPECT_EQ(folder.read("home/cloud/" + record->identifier).size(), record->size);
        EXPECT_FALSE(fs::exists(top(path).path()));
    }
    EXPECT_TRUE(fs::is_directory(top("Documents/Current Project").path()));
    EXPECT_TRUE(fs::is_regular_file(top("Desktop/Plan").path()));
    EXPECT_TRUE(fs::is_symlink(top("Documents/Old Report").path()) && !fs::exists(top("Documents/Old Report").path()));
    const auto alias = services.files.resolvingAliasFile(top("Desktop/Holiday Photos.desktop"));
    ASSERT_TRUE(alias);
    EXPECT_EQ(*alias, top("Documents/Photos"));
    fs::rename(top("Documents/Projects").path(), top("Projects").path());
    const auto target = services.cloud.resolveExternalDocumentReference(top("Desktop/Shed.tesselref"));
    EXPECT_TRUE(target && *target == top("Projects/Garden/Shed.md"));
    const ResourceKey keys[] = {ResourceKey::SharedItemRole, ResourceKey::IsPackage};
    const auto budget = services.resources.values(keys, top("Documents/Budget.csv"), ValueVariant::Promised);
    EXPECT_EQ(budget->at(ResourceKey::SharedItemRole), Value(SharedItemRole::kParticipant));
    const auto album = services.resources.values(keys, top("Documents/Album.lookbook"), ValueVariant::Promised);
    EXPECT_EQ(album->at(ResourceKey::IsPackage), Value(true));
}

TEST_F(LocalCloudServiceTest, SeveralFirstStartsAtOnceMakeOneDrive)
{
    std::vector<pid_t> children;
    for (int i = 0; i < 6; ++i) {
        children.push_back(::fork());
        if (children.back() == 0) {
            const auto platform = LinuxPlatform::create({folder.url("home").path(), {}, nullptr, "en"});
            ::_exit(platform && (*platform)->services().cloud.libraries().size() == 2 ? 0 : 1);
        }
    }
    for (const auto child : children) {
        int status = -1;
        ::waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    const auto first = start();
    const auto second = start();
    ASSERT_FALSE(first->services().cloud.signIn("one"));
    ASSERT_FALSE(second->services().cloud.signIn("two"));
    EXPECT_EQ(first->services().cloud.identityToken(), second->services().cloud.identityToken());
    EXPECT_FALSE(fs::exists(folder.url("home/catalog.sqlite.damaged-1").path()));
}

// The first start is killed at any moment: the next one finishes it.
TEST_F(LocalCloudServiceTest, AnInterruptedFirstStartIsFinishedByTheNext)
{
    start("whole");
    const auto whole = treeOf(folder.url("whole/Mobile Documents")).size();
    for (int delay = 0; delay < 10; ++delay) {
        const auto home = "home" + std::to_string(delay);
        const auto child = ::fork();
        if (child == 0) {
            (void)LinuxPlatform::create({folder.url(home).path(), {}, nullptr, "en"});
            ::_exit(0);
        }
        ::usleep(static_cast<useconds_t>(delay) * 4000);
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        EXPECT_THAT(identifiers(start(home)->services().cloud),
                    UnorderedElementsAre("orvane.Lookbook", "orvane.Quillpad"));
        EXPECT_EQ(treeOf(folder.url(home + "/Mobile Documents")).size(), whole);
        EXPECT_FALSE(fs::exists(folder.url(home + "/.example-drive").path()));
    }
}

TEST_F(LocalCloudServiceTest, SaysWhyItCannotStart)
{
    folder.tree("file shut/ open/");
    const auto path = [&](const char* name) { return folder.url(name).path(); };
    EXPECT_EQ(refusal(path("open"), path("gone")), "No such folder: " + path("gone"));
    EXPECT_EQ(refusal(path("open"), path("file")), "Not a folder: " + path("file"));
    EXPECT_EQ(refusal(path("file")), "Not a folder: " + path("file"));
    EXPECT_THAT(refusal(path("file/home")), HasSubstr("Cannot make the folder: " + path("file/home")));

    fs::permissions(path(""), fs::perms::all);
    fs::permissions(path("shut"), fs::perms::none);
    fs::permissions(path("open"), fs::perms::owner_read | fs::perms::others_read | fs::perms::others_exec);
    const Unprivileged user;
    const auto own = path("own");
    EXPECT_EQ(refusal(own, path("shut")), "Cannot read the folder: " + path("shut") + ": Permission denied");
    EXPECT_EQ(refusal(path("open")), "Cannot write to the folder: " + path("open") + ": Permission denied");
    EXPECT_EQ(refusal(path("shut/home")), "Cannot make the folder: " + path("shut/home") + ": Permission denied");
}

} // namespace tessel
