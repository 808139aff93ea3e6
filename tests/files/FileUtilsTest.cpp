#include "files/FileUtils.h"
#include "platform/linux/cloud/Placeholder.h"
#include "tests/files/WatchedValues.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::MatchesRegex;

class FileUtilsTest : public testing::Test {
protected:
    InstalledPlatform platform;
    const TemporaryDrive& drive = platform.drive;
};

TEST_F(FileUtilsTest, AsksForThePromisedValueFirst)
{
    WatchedValues values(platform::installed().resources);
    const platform::Scope scope(servicesWith(values));
    const auto near = drive.file("Near.txt", "four");
    const auto far = drive.url("Far.txt");
    ASSERT_EQ(writePlaceholder(far, {"Far.txt", 9, {}, {}, "public.plain-text", "id", {}}), std::nullopt);
    EXPECT_EQ(FileUtils::getResourceValue(ResourceKey::FileSize, far), Value(std::int64_t(9)));
    EXPECT_EQ(FileUtils::getResourceValue(ResourceKey::FileSize, drive.url()), Value());
    EXPECT_EQ(FileUtils::getResourceValue(ResourceKey::FileSize, std::nullopt), Value());
    values.promisedError = Error();
    EXPECT_EQ(FileUtils::getResourceValue(ResourceKey::FileSize, near), Value(std::int64_t(4)));
    EXPECT_EQ(FileUtils::getResourceValue(ResourceKey::FileSize, far), Value());
}

TEST_F(FileUtilsTest, LogsTheAttributesOfAFile)
{
    FileUtils::logFileAttributes(drive.file("Plan.txt", "four").path());
    FileUtils::logFileAttributes(drive.url("Gone").path());
    const std::string start = R"(\(TSD\)\[DEBUG\] \+\[FileUtils logFileAttributes:\] \(\*\) )";
    EXPECT_THAT(platform.log->lines(),
                ElementsAre(MatchesRegex(start + R"(Date Created: .* \(-?[0-9]+\.[0-9]{6} seconds ago\))"),
                            MatchesRegex(start + R"(Date Modified: [0-9 :+-]* \(-?[0-9]+\.[0-9]{6} seconds ago\))"),
                            MatchesRegex(start + "Size: 4 bytes"),
                            "(TSD)[ERROR] +[FileUtils logFileAttributes:] (*) Cannot get attributes of " +
                                drive.url("Gone").path() +
                                ": The operation on “Gone” failed: No such file or directory."));
}

} // namespace
} // namespace tessel
