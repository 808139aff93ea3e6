#include "app/common/TSDAdditions.h"

#include "app/common/TesselDriveApp_StrataAdditions.h"
#include "files/DRItem.h"
#include "platform/files/GenerationalStorage.h"
#include "platform/linux/cloud/ExternalReference.h"
#include "platform/linux/cloud/Placeholder.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace tessel {

namespace {

namespace fs = std::filesystem;
using ::testing::Contains;

class TSDAdditionsTest : public ::testing::Test {
protected:
    [[nodiscard]] URL top(const std::string& path = {}) const { return drive.url("orvane~Quillbox").appending(path); }
    URL document(const std::string& path) const { return drive.file("orvane~Quillbox/" + path, "text"); }
    /// A reference with this content.
    [[nodiscard]] URL reference(const std::string& name, std::string_view content) const
    {
        return drive.file("orvane~Quillbox/" + name + ".tesselref", content);
    }
    [[nodiscard]] URL referenceTo(const std::string& name, const std::string& path) const
    {
        return reference(name, externalReferenceContent({std::nullopt, "orvane~Quillbox/" + path}));
    }
    [[nodiscard]] URL placeholder(const std::string& path) const
    {
        const auto url = top(path);
        const std::string name(url.lastPathComponent());
        EXPECT_EQ(writePlaceholder(url, {name, 4, {}, Date{5}, "public.plain-text", "id", {}}), std::nullopt);
        return url;
    }

    InstalledPlatform platform{{"orvane.Lookbook", "Lookbook"}};
    const TemporaryDrive& drive = platform.drive;
};

TEST_F(TSDAdditionsTest, LeaveAllOtherURLsAsTheyAre)
{
    drive.link("orvane~Quillbox/link.tesselref", "Plan.txt");
    for (const auto& url : {document("Plan.txt"), drive.folder("orvane~Quillbox/Folder.tesselref"),
                            top("link.tesselref"), top("gone.tesselref"), placeholder("far.txt")}) {
        EXPECT_EQ(tsd_URLByResolvingBookmark(url), url);
        EXPECT_EQ(tsd_URLByResolvingPromise(url), url);
        EXPECT_EQ(tsd_URLByResolvingAlias(url), url);
    }
    const auto damaged = drive.file("orvane~Quillbox/.tsd-0123456789abcdef.cloud", "{}");
    EXPECT_EQ(tsd_URLByResolvingPromise(damaged), damaged);
}

TEST_F(TSDAdditionsTest, FollowAReferenceToItsDocument)
{
    const auto plan = document("Projects/Plan.txt");
    const auto byPath = referenceTo("by path", "Projects/Plan.txt");
    const auto identifier = static_cast<std::uint32_t>(tsd_DocumentID(plan));
    const auto byIdentifier =
        reference("by identifier", externalReferenceContent({identifier, "orvane~Quillbox/Projects/Plan.txt"}));
    const auto library = reference("library", R"({"path": "orvane~Lookbook/Documents"})");
    const auto chain = referenceTo("chain", "by identifier.tesselref");
    for (const auto& url : {byPath, byIdentifier, chain}) {
        EXPECT_EQ(tsd_URLByResolvingBookmark(url), plan);
        EXPECT_EQ(tsd_URLByResolvingAlias(url), plan);
    }
    EXPECT_EQ(tsd_URLByResolvingBookmark(library), drive.url("orvane~Lookbook/Documents"));

    fs::rename(top("Projects").path(), top("Old").path());
    document("Projects/Plan.txt"); // another one
    EXPECT_EQ(tsd_URLByResolvingBookmark(byPath), plan);
    EXPECT_EQ(tsd_URLByResolvingBookmark(chain), top("Old/Plan.txt"));

    const auto far = placeholder("far.txt");
    EXPECT_EQ(tsd_URLByResolvingPromise(placeholderURL(far)), far);
    EXPECT_EQ(tsd_URLByResolvingBookmark(referenceTo("to far", "far.txt")), far);
}

TEST_F(TSDAdditionsTest, FindNothingBehindADamagedOrHostileReference)
{
    document("Plan.txt");
    const auto secret = drive.file("secret.txt");
    drive.link("orvane~Quillbox/way out", secret.path());
    drive.link("orvane~Quillbox/out", drive.url().path());
    std::vector<URL> references = {referenceTo("ring 1", "ring 2.tesselref"), referenceTo("ring 2", "ring 1.tesselref"),
                                   referenceTo("self", "self.tesselref"), placeholder("not on the device.tesselref")};
    for (const std::string content :
         {R"()", R"([])", R"({})", R"({"path": 5})", R"({"path": ""})", R"({"path": "/etc/passwd"})",
          R"({"path": "secret.txt"})", R"({"path": "../secret.txt"})", R"({"path": "orvane~Quillbox/../secret.txt"})",
          R"({"path": "orvane~Quillbox/way out"})", R"({"path": "orvane~Quillbox/out/secret.txt"})",
          R"({"path": "orvane~Quillbox2/Plan.txt"})", R"({"path": "orvane~Quillbox/Plan.txt\u0000x"})",
          R"({"path": "orvane~Quillbox/gone.txt"})", R"({"path": "orvane~Quillbox/Plan.txt", "documentIdentifier": 0})",
          R"({"documentIdentifier": 4294967297})", R"({"documentIdentifier": -1})", R"({"documentIdentifier": 77})"})
        references.push_back(reference(std::to_string(references.size()), content));
    references.push_back(reference("deep", std::string(60'000, '[')));
    references.push_back(reference("long", R"({"path": "orvane~Quillbox/Plan.txt"})" + std::string(70'000, ' ')));
    for (const auto& url : references) {
        EXPECT_EQ(tsd_URLByResolvingBookmark(url), std::nullopt) << drive.read(url.path());
        EXPECT_EQ(tsd_URLByResolvingAlias(url), url);
    }
}

TEST_F(TSDAdditionsTest, AnItemOfAReferenceDescribesItsDocument)
{
    const auto plan = document("Plan.txt");
    const auto item = DRItem::initWithURL(referenceTo("to plan", "Plan.txt"));
    ASSERT_TRUE(item);
    EXPECT_TRUE(item->isBookmark());
    EXPECT_EQ(item->resolvedURL(), plan);
    EXPECT_EQ(item->localizedName(), "Plan.txt");
    EXPECT_EQ(item->fileSize(), 4U);
    EXPECT_FALSE(DRItem::initWithURL(plan)->isBookmark());

    const auto lost = DRItem::initWithURL(referenceTo("lost", "gone.txt"));
    ASSERT_TRUE(lost);
    EXPECT_TRUE(lost->isBookmark());
    EXPECT_EQ(lost->resolvedURL(), std::nullopt);
    EXPECT_EQ(lost->localizedName(), "lost.tesselref");
}

TEST_F(TSDAdditionsTest, KnowTheSpecialFolders)
{
    drive.tree("orvane~Quillbox/Documents/Documents/ orvane~Quillbox/Desktop/ orvane~Quillbox/documents/ "
               "orvane~Quillbox/also->Documents");
    drive.link("way in", "orvane~Quillbox");
    for (const auto* path : {"orvane~Quillbox/Documents", "orvane~Quillbox/Desktop", "way in/Desktop",
                             "orvane~Quillbox/Documents/Documents/../../Desktop"})
        EXPECT_TRUE(tsd_isDesktopOrDocumentsFolder(drive.url(path))) << path;
    for (const auto* path :
         {"orvane~Quillbox", "orvane~Quillbox/Documents/Documents", "orvane~Quillbox/documents",
          "orvane~Quillbox/Documents 2", "orvane~Quillbox/also", "orvane~Lookbook/Documents", "Documents"})
        EXPECT_FALSE(tsd_isDesktopOrDocumentsFolder(drive.url(path))) << path;
}

TEST_F(TSDAdditionsTest, AllowMovesIntoAnotherContainerThatIsThere)
{
    const auto plan = document("Plan.txt");
    const auto album = drive.file("orvane~Lookbook/Documents/album");
    const auto outside = drive.file("outside.txt");
    EXPECT_FALSE(tsd_canCrossZoneMoveURLs({}));
    EXPECT_TRUE(tsd_canCrossZoneMoveURLs({plan}));
    EXPECT_TRUE(tsd_canCrossZoneMoveURLs({album, outside})) << "the first one stands for all";
    EXPECT_FALSE(tsd_canCrossZoneMoveURLs({outside, plan}));
    fs::remove_all(drive.url("orvane~Lookbook").path());
    EXPECT_FALSE(tsd_canCrossZoneMoveURLs({plan}));
}

TEST(TSDAdditionsBoundDriveTest, AFolderOfTheUsersIsTheDefaultContainerAndTheOnlyOne)
{
    const InstalledPlatform platform;
    const auto desktop = platform.drive.folder("Desktop");
    EXPECT_TRUE(tsd_isDesktopOrDocumentsFolder(desktop));
    EXPECT_FALSE(tsd_canCrossZoneMoveURLs({desktop}));
}

/// A storage whose files answer a query with any bytes.
class ForgedStorage final : public GenerationalStorage, public OpenObject {
public:
    GenerationalStorage* real = &platform::installed().storage;
    std::uint64_t fileIdentifier = 5;
    bool opens = true;
    bool answers = true;
    std::vector<std::uint32_t> numbers; ///< at the start of the reply
    std::string bytes;                  ///< behind them
    int resolved = 0;
    ObjectIdentifier opened;

    [[nodiscard]] std::optional<std::uint32_t> deviceOf(const URL& url) const override
    {
        return real->deviceOf(url); // found once, for all tests
    }
    [[nodiscard]] std::uint64_t resolveDocumentIdentifier(std::uint64_t, std::uint32_t) override
    {
        ++resolved;
        errno = EIO;
        return fileIdentifier;
    }
    [[nodiscard]] std::unique_ptr<OpenObject> openByIdentifier(const FileSystemIdentifier&,
                                                               const ObjectIdentifier& object, std::uint32_t) override
    {
        opened = object;
        errno = ELOOP;
        return opens ? std::make_unique<ForgedStorage>(*this) : nullptr;
    }
    [[nodiscard]] bool queryAttributes(std::uint32_t, std::uint32_t, std::span<std::byte> reply) const override
    {
        std::memcpy(reply.data(), numbers.data(), numbers.size() * sizeof numbers[0]);
        std::memcpy(reply.data() + 16, bytes.data(), bytes.size());
        errno = EACCES;
        return answers;
    }
};

class URLFromDocumentIDTest : public ::testing::Test {
protected:
    std::optional<URL> answer(std::vector<std::uint32_t> numbers, std::string bytes)
    {
        storage.numbers = std::move(numbers);
        storage.bytes = std::move(bytes);
        return tsd_URLFromDocumentID("7");
    }

    InstalledPlatform platform;
    ForgedStorage storage;
    platform::Scope scope{servicesWith(storage)};
};

TEST_F(URLFromDocumentIDTest, TrustsNoNumberOfAReply)
{
    constexpr auto kBack = [](std::int32_t offset) { return static_cast<std::uint32_t>(offset); };
    EXPECT_EQ(answer({18, 7, 8, 2}, "/a"), URL::file("/a"));
    EXPECT_EQ(answer({22, 7, 12, 2}, "xxxx/a"), URL::file("/a"));
    const auto longest = '/' + std::string(kMaximumReplyPath - 1, 'a');
    EXPECT_EQ(answer({1040, 7, 8, 1024}, longest), URL::file(longest));
    platform.log->clear();
    const std::vector<std::uint32_t> hostile[] = {{0, 7, 8, 2},
                                                  {15, 7, 8, 0},
                                                  {16, 7, 8, 0},
                                                  {17, 7, 8, 2},
                                                  {1041, 7, 8, 2},
                                                  {0xFFFF'FFFF, 7, 8, 2},
                                                  {18, 7, 9, 2},
                                                  {18, 7, 8, 3},
                                                  {18, 7, 8, 0xFFFF'FFFF},
                                                  {18, 7, kBack(-9), 2},
                                                  {18, 7, kBack(7), 2},
                                                  {18, 7, kBack(INT32_MIN), 2},
                                                  {18, 7, INT32_MAX, 2},
                                                  {1040, 7, 8, 1025},
                                                  {18, 7, 0xFFFF'FFFE, 0xFFFF'FFFF},
                                                  {1040, 7, 1032, 0},
                                                  {1040, 7, INT32_MAX, 0xFFFF'FFFF}};
    for (const auto& numbers : hostile) {
        platform.log->clear();
        EXPECT_EQ(answer(numbers, "/a"), std::nullopt);
        EXPECT_THAT(platform.log->lines(),
                    Contains("(TSD)[ERROR] URLWithDocumentIDCheck (*) attribute query gave no path for document ID 7"));
    }
    EXPECT_EQ(answer({18, 7, 8, 2}, "aa"), std::nullopt) << "not absolute";
    EXPECT_EQ(answer({18, 7, 8, 2}, std::string("/\0", 2)), std::nullopt);
}

TEST_F(URLFromDocumentIDTest, TellsAtWhichStepItFailed)
{
    const auto failure = [&](const std::optional<std::string>& documentID) {
        platform.log->clear();
        EXPECT_EQ(tsd_URLFromDocumentID(documentID), std::nullopt);
        const auto lines = platform.log->lines();
        return lines.size() == 1 ? lines.front() : std::to_string(lines.size()) + " lines";
    };
    storage.numbers = {18, 7, 8, 2};
    storage.bytes = "/a";
    const std::string name = "(TSD)[ERROR] +[URL(TesselDriveApp_StrataAdditions) tsd_URLFromDocumentID:] (*) ";
    EXPECT_EQ(failure({}), name + "tsd_URLFromDocumentID: missing document ID");
    for (const auto* text : {"", "x7", " 7", "-7", "+7"})
        EXPECT_EQ(failure(text), name + "tsd_URLFromDocumentID: no number: " + text);
    EXPECT_EQ(storage.resolved, 0);

    EXPECT_EQ(tsd_URLFromDocumentID("7 and more"), URL::file("/a"));
    const std::string check = "(TSD)[ERROR] URLWithDocumentIDCheck (*) ";
    EXPECT_EQ(failure("8"), check + "document IDs didn't match (7 v/s 8)");
    EXPECT_EQ(failure("4294967303"), check + "document IDs didn't match (7 v/s 4294967303)") << "2^32 + 7";
    EXPECT_EQ(failure("99999999999999999999999"), check + "document IDs didn't match (7 v/s 18446744073709551615)");

    storage.fileIdentifier = 0x1'0000'0009;
    storage.answers = false;
    EXPECT_EQ(failure("7"), check + "attribute query failed: 13 (Permission denied)");
    EXPECT_EQ(storage.opened.low, 9U);
    EXPECT_EQ(storage.opened.high, 0U);
    storage.opens = false;
    EXPECT_EQ(failure("7"), "(TSD)[ERROR] openbyid (*) openbyid failed: 40 (Too many levels of symbolic links)");
    storage.fileIdentifier = 0;
    EXPECT_EQ(failure("7"), name + "resolving the document ID failed: 5 (Input/output error)");
}

} // namespace

} // namespace tessel
