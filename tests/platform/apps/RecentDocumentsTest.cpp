#include "platform/linux/apps/RecentDocuments.h"

#include "platform/base/Platform.h"
#include "platform/cloud/CloudService.h"
#include "platform/linux/base/KeyFile.h"
#include "platform/linux/cloud/LocalCloudService.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tessel {
namespace {

using testing::ElementsAre;

constexpr const char* kEntry = "user/applications/orvane.TesselDrive.desktop";
constexpr const char* kInstalled = "[Desktop Entry]\nType=Application\nName=Drive\nExec=tesseldrive %U\n"
                                   "Actions=search;\n\n[Desktop Action search]\nName=Search\nExec=tesseldrive search\n";

TEST(ShortcutEntryTest, SaysWhatTheDocumentsAreCalled)
{
    const std::string hostile = " a\\nb;%U\n[Desktop Entry]\nExec=evil\t";
    const auto entry = *shortcutEntry(kInstalled, {{7, hostile}, {9, "תוכנית.txt"}});
    const KeyFile file(entry);
    EXPECT_EQ(KeyFile::text(*file.value("Desktop Action recent7", "Name")), hostile);
    EXPECT_EQ(file.value("Desktop Action recent9", "Name"), "תוכנית.txt");
    EXPECT_EQ(file.value("Desktop Action recent9", "Exec"), "tesseldrive --shortcut recent:9");
    EXPECT_EQ(file.value("Desktop Entry", "Exec"), "tesseldrive %U");
    EXPECT_EQ(file.value("Desktop Entry", "TryExec"), "tesseldrive");
    EXPECT_EQ(file.value("Desktop Entry", "Actions"), "search;recent7;recent9;");
    EXPECT_EQ(file.value("Desktop Action search", "Name"), "Search");
    EXPECT_THAT(documentsOfShortcutEntry(entry), testing::Optional(ElementsAre(7U, 9U)));
    EXPECT_FALSE(documentsOfShortcutEntry(kInstalled));

    const auto spare = *shortcutEntry("[Desktop Entry]\nExec=\"/opt/my drive\" --x %u", {{7, "A"}});
    EXPECT_EQ(KeyFile(spare).value("Desktop Entry", "Actions"), "recent7;");
    EXPECT_EQ(KeyFile(spare).value("Desktop Action recent7", "Exec"), "\"/opt/my drive\" --x --shortcut recent:7");
    EXPECT_FALSE(shortcutEntry("nonsense", {{7, "A"}}));
}

class RecentDocumentsTest : public testing::Test {
protected:
    [[nodiscard]] std::string entry() const
    {
        return std::filesystem::exists(desktop.url(kEntry).path()) ? desktop.read(kEntry) : "";
    }
    /// The names in the user's entry.
    [[nodiscard]] std::vector<std::string> names() const
    {
        std::vector<std::string> found;
        const auto text = entry();
        const KeyFile file(text);
        for (const auto& action : KeyFile::list(file.value("Desktop Entry", "Actions").value_or("")))
            if (action != "search")
                found.emplace_back(*file.value("Desktop Action " + action, "Name"));
        return found;
    }
    void open(const std::string& name) { recents->add(drive.url("orvane~Quillbox/" + name)); }
    /// Waits for all that was begun.
    void restart()
    {
        recents.reset();
        recents.emplace(
            DesktopFolders{.configuration = {},
                           .data = {platform.desktop.url("user").path(), platform.desktop.url("system").path()},
                           .programs = {},
                           .desktops = {}},
            RecentDocumentsServices{services.notifications, services.log, services.text, services.types, services.cloud,
                                    dynamic_cast<LocalCloudService&>(services.cloud).documentIdentifiers()});
    }

    InstalledPlatform platform{{}};
    const platform::Services services = platform.services();
    const TemporaryDrive& drive = platform.drive;
    const TemporaryDrive& desktop = platform.desktop;
    const URL installed = desktop.file("system/applications/orvane.TesselDrive.desktop", kInstalled);
    std::optional<RecentDocuments> recents;
};

TEST_F(RecentDocumentsTest, FollowsTheLastDocuments)
{
    drive.tree("orvane~Quillbox/A orvane~Quillbox/B orvane~Quillbox/C orvane~Quillbox/D orvane~Quillbox/E "
               "orvane~Quillbox/F orvane~Quillbox/Folder/ orvane~Quillbox/.Trash/ outside");
    restart();
    for (const std::string name : {"A", "B", "C", "D", "E", "Folder", "gone", "../outside", "A", "F"})
        open(name);
    restart();
    EXPECT_THAT(names(), ElementsAre("F", "A", "E", "D", "C"));

    const auto root = drive.url("orvane~Quillbox").path() + "/";
    std::filesystem::rename(root + "A", root + "Folder/Renamed");
    std::filesystem::rename(root + "E", root + ".Trash/E");
    std::filesystem::remove(root + "D");
    services.notifications.post("ApplicationDidBecomeActive");
    restart();
    EXPECT_THAT(names(), ElementsAre("F", "Renamed", "C"));

    ASSERT_FALSE(services.cloud.signOut());
    platform.settle();
    restart();
    EXPECT_EQ(entry(), "");
    open("B");
    restart();
    EXPECT_EQ(entry(), "") << "nobody is signed in";
}

TEST_F(RecentDocumentsTest, LeavesTheUsersOwnEntryAlone)
{
    const auto document = drive.file("orvane~Quillbox/A");
    restart();
    open("A");
    restart();
    EXPECT_THAT(names(), ElementsAre("A"));
    ASSERT_FALSE(services.cloud.signIn("somebody else"));
    platform.settle();
    restart();
    EXPECT_EQ(entry(), "") << "of another account's documents nothing is left";

    const std::string own = "[Desktop Entry]\nType=Application\nName=Mine\nExec=mine\n";
    desktop.file(kEntry, own);
    const auto stays = [&] {
        open("A");
        ASSERT_FALSE(services.cloud.signIn("somebody"));
        platform.settle();
        open("A");
        services.notifications.post("ApplicationWillResignActive");
        restart();
        EXPECT_EQ(entry(), own);
    };
    stays();
    std::filesystem::remove(desktop.url(kEntry).path());
    desktop.file("user/mine", own);
    desktop.link(kEntry, "../mine");
    stays();
    EXPECT_TRUE(std::filesystem::is_symlink(desktop.url(kEntry).path()));

    std::filesystem::remove(desktop.url(kEntry).path());
    std::filesystem::remove(installed.path());
    open("A");
    restart();
    EXPECT_EQ(entry(), "") << "the program is not installed";
}

} // namespace
} // namespace tessel
