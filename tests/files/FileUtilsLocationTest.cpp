#include "files/FileUtils.h"
#include "platform/base/Platform.h"
#include "platform/ui/Device.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

namespace tessel {
namespace {

using testing::ElementsAre;

class FileUtilsLocationTest : public testing::Test {
protected:
    static std::string where(const URL& url) { return FileUtils::displayableLocationForURL(url).value_or("none"); }
    static std::string isolated(const std::string& name) { return "\u2068" + name + "\u2069"; }

    InstalledPlatform platform{{"orvane.Lookbook", "Lookbook"}};
    const TemporaryDrive& drive = platform.drive;
    const std::string top = isolated("Tessel Drive");
};

TEST_F(FileUtilsLocationTest, LeadsFromTheDriveDownToTheFolder)
{
    const auto plan = drive.file("orvane~Quillbox/Plan.txt");
    const auto deep = drive.file("orvane~Quillbox/Projects/2026\n/Plan.txt");
    const auto page = drive.file("orvane~Lookbook/Documents/Trips/Rome/Page.txt");
    const std::string arrow = " ▸ ";
    EXPECT_EQ(where(plan), top);
    EXPECT_EQ(where(deep), top + arrow + isolated("Projects") + arrow + isolated("2026␊"));
    EXPECT_EQ(where(page), top + arrow + isolated("Lookbook") + arrow + isolated("Trips") + arrow + isolated("Rome"));
    EXPECT_EQ(where(drive.url("orvane~Lookbook/Documents")), top + arrow + isolated("Lookbook"));
    EXPECT_EQ(where(drive.url("orvane~Quillbox")), top);
    EXPECT_EQ(where(drive.url("orvane~Quillbox/Gone/Plan.txt")), top + arrow + isolated("Gone"));
    EXPECT_EQ(where(platform.desktop.file("Plan.txt")), "none");

    platform.services().device.layoutDirection = LayoutDirection::RightToLeft;
    EXPECT_EQ(where(plan), "\u200F" + top);
    EXPECT_EQ(where(page),
              "\u200F" + top + " ◂ " + isolated("Lookbook") + " ◂ " + isolated("Trips") + " ◂ " + isolated("Rome"));
}

TEST_F(FileUtilsLocationTest, IsWrittenAsTheUsersLanguageIs)
{
    const TemporaryDrive home;
    const auto written = [&](const char* locale) {
        const auto other = LinuxPlatform::create({home.url().path(), drive.url().path(), nullptr, locale});
        const platform::Scope scope((*other)->services());
        return where(drive.file("Projects/Plan.txt"));
    };
    EXPECT_THAT(written("en"), testing::EndsWith(" ▸ " + isolated("Projects")));
    EXPECT_THAT(written("ar_EG"), testing::EndsWith(" ◂ " + isolated("Projects")));
}

TEST_F(FileUtilsLocationTest, SplitsAURL)
{
    std::shared_ptr<const CloudContainer> container;
    std::vector<std::string> names;
    const auto page = drive.file("orvane~Lookbook/Documents/Trips/Page.txt");
    EXPECT_EQ(FileUtils::containerAndRelativePathforURL(page, &container, &names), std::nullopt);
    EXPECT_EQ(container->identifier, "orvane.Lookbook");
    EXPECT_THAT(names, ElementsAre("Trips", "Page.txt"));
    EXPECT_EQ(FileUtils::containerAndRelativePathforURL(page, nullptr, nullptr), std::nullopt);

    container.reset();
    names = {"untouched"};
    platform.log->clear();
    EXPECT_EQ(FileUtils::containerAndRelativePathforURL(drive.url("../Plan.txt"), &container, &names), std::nullopt);
    EXPECT_EQ(container, nullptr);
    EXPECT_THAT(platform.log->lines(),
                ElementsAre("(TSD)[WARNING] +[FileUtils containerAndRelativePathforURL:container:"
                            "relativePathComponents:] (*) Split URL: (null)"));
    EXPECT_EQ(FileUtils::containerAndRelativePathforURL(drive.url("orvane~Quillbox"), &container, &names),
              std::nullopt);
    EXPECT_THAT(names, ElementsAre("untouched"));
}

TEST(FileUtilsTypesTest, KnowsWhatALibraryTakes)
{
    const InstalledPlatform platform{
        {"orvane.Lookbook", "Lookbook", {}, {"public.text", "public.image", "public.image"}},
        {"orvane.Anything", "Anything", {}, {"com.adobe.pdf", "public.content"}},
        {"orvane.Silent", "Silent"}};
    const auto takes = [&](const char* name) {
        return FileUtils::isValidExtensionForContainer(platform.drive.url(name));
    };
    const auto log = [&] { return platform.log->lines().empty() ? "" : platform.log->lines().back(); };
    EXPECT_TRUE(takes("orvane~Silent/Documents/a.png")) << "it declares nothing";
    EXPECT_TRUE(takes("orvane~Quillbox/a.png"));
    EXPECT_FALSE(takes("../a.png"));
    EXPECT_TRUE(takes("../a")) << "what has no type needs no container";
    EXPECT_FALSE(takes("orvane~Lookbook/Documents/a.mp3"));
    EXPECT_EQ(log(), "");

    const auto start = std::string("(TSD)[INFO] +[FileUtils isValidExtensionForContainer:] (*) ");
    EXPECT_TRUE(takes("orvane~Lookbook/Documents/a.PNG"));
    EXPECT_EQ(log(), start + "Extension PNG conforms to UTI public.image");
    EXPECT_TRUE(takes("orvane~Anything/Documents/a.mp3"));
    EXPECT_EQ(log(), start + "Container supports all UTIs");
}

} // namespace
} // namespace tessel
