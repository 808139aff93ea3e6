#include "files/DRItem.h"
#include "platform/files/TypeRegistry.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/cloud/TagAttribute.h"
#include "platform/linux/files/ExtendedAttributes.h"
#include "platform/linux/files/LinuxResourceValues.h"
#include "tests/files/WatchedValues.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace tessel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Optional;

class DRItemTest : public testing::Test {
protected:
    std::shared_ptr<DRItem> item(std::string_view name) { return DRItem::initWithURL(drive.url(name)); }

    URL placeholder(std::string_view name, std::uint64_t size = 0, std::string type = "public.plain-text",
                    std::optional<std::string> sharedRole = {})
    {
        const auto url = drive.url(name);
        const PlaceholderRecord record{std::string(url.lastPathComponent()), size, {}, Date{5}, type, "id", sharedRole};
        EXPECT_EQ(writePlaceholder(url, record), std::nullopt);
        return url;
    }

    URL alias(std::string_view name, std::string_view target)
    {
        return drive.file(name, "[Desktop Entry]\nType=Link\nURL=" + std::string(target) + "\n");
    }

    InstalledPlatform platform;
    const TemporaryDrive& drive = platform.drive;
    WatchedValues values{platform::installed().resources};
    platform::Scope scope{servicesWith(values)};
};

TEST_F(DRItemTest, DescribesADocument)
{
    const auto url = drive.file("Plan.txt", "seven!!");
    const auto document = DRItem::initWithURL(url);
    EXPECT_EQ(document->localizedName(), "Plan.txt");
    EXPECT_EQ(document->typeIdentifier(), "public.plain-text");
    EXPECT_EQ(document->localizedTypeDescription(), "Plain text document");
    EXPECT_EQ(document->friendlyFileSize(), "7 bytes");
    EXPECT_EQ(document->friendlyContentModificationDate(DateStyle::Short),
              platform.services().text.dateAndTime(*document->contentModificationDate(), DateStyle::Short));
    EXPECT_EQ(document->parentDirectoryURL(), drive.url());
    EXPECT_TRUE(document->isDownloaded());
    EXPECT_TRUE(document->renameable());
    EXPECT_FALSE(document->hasHiddenExtension());
    EXPECT_EQ(document->description(),
              "Name=Plan.txt, Size=7, URL=" + url.absoluteString() + ", ResURL=<same>, PromiseURL=<same>, Local,");
    EXPECT_EQ(values.reads, 1);
    EXPECT_EQ(values.openAccesses, 0);
}

TEST_F(DRItemTest, TellsFoldersFromPackages)
{
    drive.file("Talk.lookbook/slides/One.txt", "four");
    drive.file("Talk.lookbook/notes", "three");
    placeholder("Talk.lookbook/Video.txt", 100);
    drive.tree("Projects/ Empty.lookbook/");
    placeholder("Far.lookbook", 7, "orvane.lookbook.album");

    EXPECT_TRUE(item("Projects")->isDirectory());
    EXPECT_FALSE(item("Projects")->isPackage());
    EXPECT_EQ(item("Projects")->fileSize(), std::nullopt);
    const auto package = item("Talk.lookbook");
    EXPECT_FALSE(package->isDirectory());
    EXPECT_TRUE(package->isPackage());
    EXPECT_EQ(package->fileSize(), 109U) << "files at any depth, and what is still in the cloud";
    EXPECT_THAT(package->description(), EndsWith(", Package, Local,"));
    EXPECT_EQ(item("Empty.lookbook")->fileSize(), std::nullopt);
    EXPECT_EQ(item("Far.lookbook")->fileSize(), 7U) << "known, hence not summed";
}

TEST(DRItemLibraryTest, IsNamedAsItsApp)
{
    const InstalledPlatform platform{{"orvane.Lookbook", "Album Maker"}};
    const auto library = DRItem::initWithURL(platform.drive.url("orvane~Lookbook/Documents"));
    EXPECT_TRUE(library->isContainer());
    EXPECT_FALSE(library->renameable());
    EXPECT_EQ(library->localizedName(), "Album Maker");
    EXPECT_FALSE(DRItem::initWithURL(platform.drive.folder("orvane~Lookbook/Documents/Inside"))->isContainer());
}

TEST_F(DRItemTest, ReadsWhatOtherProgramsKeepInAttributes)
{
    drive.tree("Own.txt Other.txt Odd.txt");
    if (setExtendedAttribute(drive.url("Own.txt"), kSharedAttribute, "owner"))
        GTEST_SKIP() << "this file system keeps no attributes";
    ASSERT_FALSE(setExtendedAttribute(drive.url("Own.txt"), kTagAttribute, "Red,Work"));
    EXPECT_THAT(item("Own.txt")->tags(), Optional(ElementsAre("Red", "Work")));
    ASSERT_FALSE(setExtendedAttribute(drive.url("Other.txt"), kSharedAttribute, "participant"));
    ASSERT_FALSE(setExtendedAttribute(drive.url("Odd.txt"), kSharedAttribute, "someone"));
    placeholder("Far.txt", 0, "public.plain-text", "participant");
    EXPECT_TRUE(item("Own.txt")->renameable());
    EXPECT_TRUE(item("Odd.txt")->renameable());
    EXPECT_FALSE(item("Other.txt")->renameable());
    EXPECT_FALSE(item("Far.txt")->renameable());
}

TEST_F(DRItemTest, DescribesADocumentThatIsNotOnTheDevice)
{
    const auto url = placeholder("Far.txt", 12);
    const auto document = DRItem::initWithURL(url);
    EXPECT_FALSE(document->isDownloaded());
    EXPECT_TRUE(document->isPromise());
    EXPECT_EQ(document->promiseURL(), placeholderURL(url));
    EXPECT_EQ(document->fileSize(), 12U);
    EXPECT_EQ(document->contentModificationDate(), Date{5});
    EXPECT_EQ(document->creationDate(), std::nullopt);
    EXPECT_EQ(document->description(), "Name=Far.txt, Size=12, URL=" + url.absoluteString() +
                                           ", ResURL=<same>, PromiseURL=" + placeholderURL(url).absoluteString() +
                                           ", Promise, ");
}

TEST_F(DRItemTest, FollowsLinks)
{
    drive.tree("Projects/Plan.txt Projects/link->Plan.txt up->Projects/../Projects broken->Gone loop->loop");
    drive.tree("Projects/broken->Gone/Deeper");
    const auto link = item("Projects/link");
    EXPECT_TRUE(link->isSymlink());
    EXPECT_EQ(link->typeIdentifier(), TypeIdentifier::kSymbolicLink);
    EXPECT_EQ(link->resolvedURL(), drive.url("Projects/Plan.txt"));
    EXPECT_EQ(link->url(), drive.url("Projects/link"));
    EXPECT_THAT(link->description(), EndsWith("Local,Symlink, "));
    EXPECT_EQ(item("up")->resolvedURL(), drive.url("Projects"));
    EXPECT_EQ(item("broken")->resolvedURL(), drive.url("Gone"));
    EXPECT_EQ(item("Projects/broken")->resolvedURL(), drive.url("Projects/Gone/Deeper"));
    EXPECT_EQ(item("loop")->resolvedURL(), drive.url("loop"));
}

TEST_F(DRItemTest, KnowsThatALinkLeadsToThePlaceholderOfItsTarget)
{
    placeholder("Far.txt");
    drive.link("link", "Far.txt");
    EXPECT_EQ(item("link")->promiseURL(), placeholderURL(drive.url("Far.txt")));
    EXPECT_TRUE(item("link")->isPromise());
}

TEST_F(DRItemTest, FollowsAliases)
{
    const auto target = drive.file("A plan.txt");
    alias("Good.desktop", "file://" + drive.url("A%20plan.txt").path());
    alias("Broken.desktop", "file://" + drive.url("Gone").path());
    const auto good = item("Good.desktop");
    EXPECT_TRUE(good->isSymlink());
    EXPECT_EQ(good->resolvedURL(), target);
    EXPECT_FALSE(good->isPromise());
    const auto broken = item("Broken.desktop");
    EXPECT_TRUE(broken->isSymlink());
    EXPECT_EQ(broken->resolvedURL(), std::nullopt);
    EXPECT_EQ(broken->thumbnail(), std::nullopt);
    EXPECT_THAT(platform.log->lines(),
                Contains(HasSubstr("-[DRItem resolveTrovelAlias:] (*) Error resolving Alias: Error General 4")));
}

TEST_F(DRItemTest, IsNotMadeOfNothing)
{
    EXPECT_EQ(item("Gone"), nullptr);
    EXPECT_EQ(DRItem::initWithURL(std::nullopt), nullptr);
    EXPECT_THAT(platform.log->lines(),
                ElementsAre("(TSD)[ERROR] -[DRItem initWithURL:] (*) Failed to cache values for URL " +
                                drive.url("Gone").absoluteString(),
                            "(TSD)[ERROR] -[DRItem initWithURL:] (*) Failed to cache values for URL (null)"));
}

TEST_F(DRItemTest, ReadsPlainValuesWhereThePromisedOnesFail)
{
    drive.file("Plan.txt");
    values.promisedError = Error{Domain::General, ErrorCode::kReadNoPermission, {}, {}};
    EXPECT_EQ(item("Plan.txt")->typeIdentifier(), "public.plain-text");
    EXPECT_THAT(platform.log->lines(),
                ElementsAre(HasSubstr("(TSD)[WARNING] -[DRItem cacheValues]_block_invoke (*) ")));
}

// The cloud no longer knows the item, or its values cannot be read: what the file system says must do.
TEST_F(DRItemTest, FallsBackToAttributes)
{
    drive.file("Projects/Plan.txt", "seven!!");
    drive.tree("Projects/near->Plan.txt far->Projects/Plan.txt top->/");
    ASSERT_EQ(::mkfifo(drive.url("pipe").path().c_str(), 0600), 0);
    values.promisedError = Error{Domain::System, ErrorCode::kNoSuchFile, {}, {}};

    const auto document = item("Projects/Plan.txt");
    EXPECT_EQ(values.reads, 1) << "no plain values of what is gone";
    EXPECT_EQ(document->localizedName(), "Plan.txt");
    EXPECT_EQ(document->typeIdentifier(), std::nullopt);
    EXPECT_EQ(document->fileSize(), 7U);
    EXPECT_FALSE(document->isPromise());
    EXPECT_TRUE(item("Projects")->isDirectory());
    EXPECT_EQ(item("Projects")->localizedTypeDescription(), "Folder");
    EXPECT_EQ(item("Projects/near")->symlinkTarget(), "Plan.txt");
    EXPECT_EQ(item("Projects/near")->resolvedURL(), drive.url("Projects/Plan.txt"));
    EXPECT_EQ(item("far")->resolvedURL(), URL::file("Projects/Plan.txt"));
    EXPECT_EQ(item("top")->resolvedURL(), URL::file("/"));
    EXPECT_EQ(item("pipe"), nullptr);

    values.reachable = false;
    values.reads = 0;
    EXPECT_NE(item("Projects/Plan.txt"), nullptr);
    EXPECT_EQ(values.reads, 0);
}

TEST_F(DRItemTest, KeepsTheBytesOfANameThatIsNoText)
{
    const std::string name = "caf\xE9.txt";
    drive.file(name, "x");
    EXPECT_EQ(item(name)->localizedName(), name);
    placeholder("\xFF.txt", 3);
    EXPECT_EQ(item("\xFF.txt")->fileSize(), 3U);
}

TEST_F(DRItemTest, ReadsAgainForAnotherURLOnly)
{
    const auto plan = drive.file("Plan.txt");
    const auto document = DRItem::initWithURL(plan);
    drive.file("Plan.txt", "longer now");
    document->setUrl(URL::file(plan.path()));
    EXPECT_EQ(document->fileSize(), 0U);
    document->setUrl(drive.link("link", "Plan.txt"));
    EXPECT_TRUE(document->isSymlink());
    document->setUrl(plan);
    EXPECT_FALSE(document->isSymlink()) << "cleared before it is read again";
    EXPECT_EQ(document->fileSize(), 10U);
}

TEST_F(DRItemTest, LooksForItsThumbnailOnce)
{
    drive.tree("With.txt Without.txt");
    const auto image = drive.url("image.png");
    const auto without = item("Without.txt");
    values.reads = 0;
    EXPECT_EQ(without->thumbnail(), std::nullopt);
    const auto reads = values.reads;
    values.added[ResourceKey::ThumbnailDictionary] = Value::Dictionary{{kThumbnail1024, image}};
    EXPECT_EQ(without->thumbnail(), std::nullopt);
    EXPECT_EQ(values.reads, reads);
    EXPECT_EQ(item("With.txt")->thumbnail(), image);
    EXPECT_EQ(values.openAccesses, 0);
    values.added[ResourceKey::ThumbnailDictionary] = Value::Dictionary{{kThumbnail1024, "no image"}};
    EXPECT_EQ(item("With.txt")->thumbnail(), std::nullopt);
}

} // namespace
} // namespace tessel
