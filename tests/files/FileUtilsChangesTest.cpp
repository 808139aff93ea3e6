#include "files/FileUtils.h"
#include "platform/base/Platform.h"
#include "platform/files/FileCoordinator.h"
#include "platform/linux/cloud/Placeholder.h"
#include "tests/support/InstalledPlatform.h"
#include "tests/support/OtherProcess.h"

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <stdexcept>

namespace tessel {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

/// Resource values after whose first reading something else happens.
class TellingValues final : public ResourceValues {
public:
    TellingValues(ResourceValues& inner, std::function<void()> wasRead) : inner_(inner), wasRead_(std::move(wasRead)) {}

    Result<Values> values(std::span<const ResourceKey> keys, const URL& url, ValueVariant variant) const override
    {
        auto result = inner_.values(keys, url, variant);
        if (const auto told = std::exchange(wasRead_, nullptr))
            told();
        return result;
    }
    [[nodiscard]] bool promisedItemIsReachable(const URL& url) const override
    {
        return inner_.promisedItemIsReachable(url);
    }
    [[nodiscard]] URL physicalURLOfPromisedItem(const URL& url) const override
    {
        return inner_.physicalURLOfPromisedItem(url);
    }
    [[nodiscard]] std::optional<URL> logicalURLOfPromise(const URL& url) const override
    {
        return inner_.logicalURLOfPromise(url);
    }
    [[nodiscard]] bool startAccessingSecurityScopedResource(const URL&) override { return false; }
    void stopAccessingSecurityScopedResource(const URL&) override {}

private:
    ResourceValues& inner_;
    mutable std::function<void()> wasRead_;
};

class FileUtilsChangesTest : public testing::Test {
protected:
    static int codeOf(const std::optional<Error>& error) { return error ? error->code : 0; }
    [[nodiscard]] bool exists(std::string_view name) const { return fs::exists(drive.url(name).path()); }
    /// The log's lines as "LEVEL message", each of this function or of its block.
    [[nodiscard]] std::vector<std::string> logged(const std::string& function) const
    {
        std::vector<std::string> result;
        for (const auto& line : platform.log->lines())
            for (const auto& name : {function, function + "_block_invoke"})
                if (const auto at = line.find(" " + name + " (*) "); at != std::string::npos)
                    result.push_back(line.substr(6, at - 7) + line.substr(at + name.size() + 5));
        return result;
    }

    InstalledPlatform platform;
    const TemporaryDrive& drive = platform.drive;
};

TEST_F(FileUtilsChangesTest, MakesAFolderWithItsParents)
{
    const auto deep = drive.url("A/B/C");
    EXPECT_EQ(FileUtils::mkdir(deep), std::nullopt);
    EXPECT_TRUE(FileUtils::isDir(deep));
    const auto at = "'" + deep.absoluteString() + "'";
    EXPECT_THAT(logged("+[FileUtils mkdir:]"),
                ElementsAre("DEBUG Creating directory: " + at, "INFO Created directory: " + at,
                            "DEBUG Coordinated Write returned (null)"));
    EXPECT_EQ(FileUtils::mkdir(deep), std::nullopt);

    platform.log->clear();
    drive.file("A/File");
    EXPECT_NE(codeOf(FileUtils::mkdir(drive.url("A/File"))), 0);
    EXPECT_THAT(logged("+[FileUtils mkdir:]"),
                ElementsAre(StartsWith("DEBUG Creating"), StartsWith("ERROR failed to create directory:'"),
                            StartsWith("DEBUG Coordinated Write returned ")));
    EXPECT_FALSE(FileUtils::isDir(drive.url("A/File")));
}

TEST_F(FileUtilsChangesTest, RemovesAndLogsIt)
{
    const auto plan = drive.file("Plan.txt", "four");
    const auto at = "'" + plan.absoluteString() + "'";
    EXPECT_EQ(FileUtils::remove(plan), std::nullopt);
    EXPECT_FALSE(exists("Plan.txt"));
    EXPECT_THAT(logged("+[FileUtils remove:]"), ElementsAre("DEBUG Removing item: " + at, "INFO Deleted item: " + at,
                                                            "INFO Coordinated Write returned (null)"));

    drive.tree("Folder/Sub/Plan.txt link->Folder");
    EXPECT_EQ(FileUtils::remove(drive.url("link")), std::nullopt);
    EXPECT_TRUE(exists("Folder/Sub/Plan.txt"));
    EXPECT_EQ(FileUtils::remove(drive.url("Folder")), std::nullopt);
    EXPECT_FALSE(exists("Folder"));

    const auto far = drive.url("Far.txt");
    ASSERT_EQ(writePlaceholder(far, {"Far.txt", 9, {}, Date{5}, "public.plain-text", "id", {}}), std::nullopt);
    EXPECT_EQ(FileUtils::remove(far), std::nullopt);
    EXPECT_TRUE(fs::is_empty(drive.url().path())) << "the placeholder goes with its document";
}

TEST_F(FileUtilsChangesTest, KeepsWhatHasNoDate)
{
    const auto gone = drive.url("Gone.txt");
    EXPECT_EQ(codeOf(FileUtils::remove(gone)), ErrorCode::kUserCancelled);
    EXPECT_THAT(logged("+[FileUtils remove:]"),
                ElementsAre(StartsWith("DEBUG Removing"),
                            "INFO Date changed during delete (user chose Keep?) -- preserving document: '" +
                                gone.absoluteString() + "'",
                            StartsWith("INFO Coordinated Write returned ")));
}

// Two programs hold the same document. Ours asks to delete it, waits its turn behind the other's write, and must then
// find that it is about to throw away a version that it never saw.
TEST_F(FileUtilsChangesTest, KeepsADocumentThatWasSavedWhileTheDeletionWaited)
{
    const auto plan = drive.file("Plan.txt", "first");
    OtherProcess writer([&](OtherProcess& self) {
        const auto error = FileCoordinator().coordinateWriting(plan, WritingOptions::None, [&](const URL& url) {
            self.meet();
            self.meet();
            drive.file("Plan.txt", "second");
            fs::last_write_time(url.path(), fs::file_time_type::clock::now() + std::chrono::seconds(2));
        });
        if (error)
            throw std::runtime_error(error->description);
    });
    writer.meet();
    TellingValues values(platform::installed().resources, [&] { writer.meet(); });
    const platform::Scope scope(servicesWith(values));
    EXPECT_EQ(codeOf(FileUtils::remove(plan)), ErrorCode::kUserCancelled);
    EXPECT_TRUE(writer.finish());
    EXPECT_EQ(drive.read("Plan.txt"), "second");
    EXPECT_EQ(FileUtils::remove(plan), std::nullopt);
    EXPECT_FALSE(exists("Plan.txt"));
}

TEST_F(FileUtilsChangesTest, MovesAndLogsIt)
{
    const auto from = drive.file("Plan.txt", "four"), to = drive.folder("Old").appending("Plan 2.txt");
    EXPECT_EQ(FileUtils::move(from, to), std::nullopt);
    EXPECT_EQ(drive.read("Old/Plan 2.txt"), "four");
    EXPECT_FALSE(exists("Plan.txt"));
    const auto source = "'" + from.absoluteString() + "'", destination = "'" + to.absoluteString() + "'";
    EXPECT_THAT(logged("+[FileUtils move:to:]"),
                ElementsAre("DEBUG Moving src1:  " + source, "DEBUG Moving dest1: " + destination,
                            "DEBUG Moving src2:  " + source, "DEBUG Moving dest2: " + destination,
                            "INFO Move successful"));

    platform.log->clear();
    EXPECT_EQ(FileUtils::move(to, to), std::nullopt);
    EXPECT_THAT(logged("+[FileUtils move:to:]"),
                ElementsAre(HasSubstr("src1"), HasSubstr("dest1"), "DEBUG Move: src and dest are the same"));
}

TEST_F(FileUtilsChangesTest, NeverMovesOntoAnotherItem)
{
    const auto file = drive.file("File", "file"), other = drive.file("Other", "other");
    const auto folder = drive.folder("Folder"), full = drive.folder("Full");
    drive.file("Full/Plan.txt", "full");

    EXPECT_EQ(codeOf(FileUtils::move(file, folder)), ErrorCode::kUnsupported);
    EXPECT_THAT(logged("+[FileUtils move:to:]"), ElementsAre(HasSubstr("src1"), HasSubstr("dest1"),
                                                             "ERROR Move: must move a file to a file (dest is a dir)"));
    platform.log->clear();
    EXPECT_EQ(codeOf(FileUtils::move(folder, file)), ErrorCode::kUnsupported);
    EXPECT_EQ(logged("+[FileUtils move:to:]").back(), "ERROR Move: must move a dir to a dir (dest is a file)");

    platform.log->clear();
    const auto error = FileUtils::move(file, other);
    EXPECT_EQ(codeOf(error), ErrorCode::kFileExists);
    EXPECT_EQ(error->userInformation.at(ErrorKey::kDestinationFilePath), other.path());
    EXPECT_THAT(logged("+[FileUtils move:to:]"),
                ElementsAre(HasSubstr("src1"), HasSubstr("dest1"), HasSubstr("src2"), HasSubstr("dest2"),
                            StartsWith("WARNING Failed to move: "), StartsWith("WARNING Move failed: ")));
    EXPECT_EQ(codeOf(FileUtils::move(folder, full)), ErrorCode::kFileExists);
    EXPECT_EQ(drive.read("File") + drive.read("Other") + drive.read("Full/Plan.txt"), "fileotherfull");
    EXPECT_TRUE(exists("Folder"));
}

TEST_F(FileUtilsChangesTest, MovesWhatIsNotOnTheDevice)
{
    const auto far = drive.url("Far.txt"), moved = drive.folder("There").appending("Far.txt");
    ASSERT_EQ(writePlaceholder(far, {"Far.txt", 9, {}, {}, "public.plain-text", "id", {}}), std::nullopt);
    EXPECT_EQ(FileUtils::move(far, moved), std::nullopt);
    EXPECT_EQ(logged("+[FileUtils move:to:]")[2], "INFO Move: source filename does not exist, must be a fault.");
    EXPECT_EQ(FileUtils::getResourceValue(ResourceKey::FileSize, moved), Value(std::int64_t(9)));
    EXPECT_NE(codeOf(FileUtils::move(drive.url("Gone"), drive.url("Went"))), 0);
}

TEST(FileUtilsEvictionTest, GivesUpTheCopyOnTheDevice)
{
    const InstalledPlatform platform{{"orvane.Lookbook", "Lookbook"}};
    const auto plan = platform.drive.file("orvane~Quillbox/Plan.txt", "four");
    EXPECT_TRUE(FileUtils::evictDocument(plan));
    EXPECT_FALSE(FileUtils::exists(plan));
    EXPECT_EQ(FileUtils::getResourceValue(ResourceKey::FileSize, plan), Value(std::int64_t(4)));

    platform.log->clear();
    EXPECT_FALSE(FileUtils::evictDocument(platform.drive.folder("orvane~Quillbox/Folder")));
    EXPECT_THAT(platform.log->lines().back(),
                StartsWith("(TSD)[WARNING] +[FileUtils evictDocument:] (*) Evict error: "));
}

} // namespace
} // namespace tessel
