#include "platform/linux/search/DriveSearch.h"
#include "platform/base/Platform.h"
#include "platform/linux/cloud/Placeholder.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <future>
#include <sys/xattr.h>

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class DriveSearchTest : public testing::Test {
protected:
    [[nodiscard]] std::vector<std::string> find(std::vector<std::string> words)
    {
        std::promise<std::vector<std::string>> told;
        search.find(std::move(words), [&](std::vector<std::string> found) { told.set_value(std::move(found)); });
        std::vector<std::string> names;
        for (const auto& document : search.documents(told.get_future().get()))
            names.emplace_back(document.url.lastPathComponent());
        return names;
    }

    InstalledPlatform platform;
    const TemporaryDrive& drive = platform.drive;
    const TemporaryDrive home;
    DriveSearch search{home.url("search.sqlite"),
                       {drive.url()},
                       {platform.services().mainQueue, platform.services().log, platform.services().types}};
};

TEST_F(DriveSearchTest, FindsNamesTagsAndWhatIsNotOnTheDevice)
{
    drive.tree("Work/Deep/Annual_Report.txt Work/Résumé.pdf Album.lookbook/inside.png .hidden/secret.txt");
    const auto tagged = drive.file("plain.txt");
    ASSERT_EQ(::setxattr(tagged.path().c_str(), "user.xdg.tags", "Important", 9, 0), 0);
    const auto cloud = drive.url("Work/Contract.pdf");
    PlaceholderRecord record;
    record.name = "Contract.pdf";
    record.type = "public.data";
    record.identifier = "x";
    ASSERT_FALSE(writePlaceholder(cloud, record));
    search.refresh();
    EXPECT_THAT(find({"rep"}), ElementsAre("Annual_Report.txt"));
    EXPECT_THAT(find({"RESUME"}), ElementsAre("Résumé.pdf"));
    EXPECT_THAT(find({"imp"}), ElementsAre("plain.txt"));
    EXPECT_THAT(find({"contr", "pdf"}), ElementsAre("Contract.pdf"));
    EXPECT_THAT(find({"work"}), ElementsAre("Work"));
    EXPECT_THAT(find({"inside"}), IsEmpty());
    EXPECT_THAT(find({"secret"}), IsEmpty());
    for (const auto* odd : {"", "\"", "*", "a\" OR b", "NEAR(", "-", "name:x", "' OR 1"})
        EXPECT_THAT(find({odd}), IsEmpty()) << odd;
}

TEST_F(DriveSearchTest, FollowsWhatComesAndGoes)
{
    drive.tree("A/one.txt A/B/two.txt");
    search.refresh();
    std::filesystem::rename(drive.url("A/B").path(), drive.url("C").path());
    std::filesystem::remove(drive.url("A/one.txt").path());
    drive.file("A/onemore.txt");
    search.refresh();
    EXPECT_THAT(find({"one"}), ElementsAre("onemore.txt"));
    EXPECT_THAT(find({"two"}), ElementsAre("two.txt"));
    EXPECT_THAT(find({"txt"}), UnorderedElementsAre("onemore.txt", "two.txt"));
}

TEST_F(DriveSearchTest, BeginsAgainWithADamagedIndex)
{
    home.file("search.sqlite", "this is no database, and longer than a header of one would be: 0123456789");
    drive.tree("Plan.txt");
    search.refresh();
    EXPECT_THAT(find({"plan"}), ElementsAre("Plan.txt"));
}

} // namespace
} // namespace tessel
