#include "app/entry/AppDelegate.h"
#include "browser/MenuEnableChecks.h"
#include "browser/NavController.h"
#include "platform/base/Platform.h"
#include "platform/files/FileManager.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

namespace tessel {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsSupersetOf;

constexpr const char* kDesktop = "orvane~Quillbox/Desktop";
constexpr const char* kDocuments = "orvane~Quillbox/Documents";

/// The program on a drive with an app library of each depth.
class EditModeTest : public testing::Test {
protected:
    EditModeTest()
    {
        drive.tree("orvane~Quillbox/Documents/ orvane~Quillbox/Desktop/ orvane~Quillbox/Work/Plan.txt "
                   "orvane~Quillbox/Plan.txt orvane~Quillbox/Notes.txt");
        for (const auto* library : {"None", "One", "Any", "Odd", "Absent"})
            drive.tree("orvane~" + std::string(library) + "/Documents/Folder/Inner.txt orvane~" + library +
                       "/Documents/Sketch.txt");
        application.launch({});
        platform.settle();
    }
    [[nodiscard]] std::shared_ptr<NavController> navigation() const
    {
        return std::dynamic_pointer_cast<NavController>(delegate.rootWindow->rootViewController());
    }
    [[nodiscard]] std::shared_ptr<DocumentListController> list() const
    {
        return navigation()->getTopDocumentListController();
    }
    [[nodiscard]] std::shared_ptr<DocumentListController> listOf(std::string_view folder)
    {
        EXPECT_TRUE(navigation()->warpToFolderForURL(drive.url(folder)));
        platform.settle();
        return list();
    }
    void select(const std::vector<std::string>& paths)
    {
        std::vector<URL> urls;
        for (const auto& path : paths)
            urls.push_back(drive.url(path));
        list()->setSelectedItemURLs(urls);
    }
    /// "New Folder | - | Move (disabled) | - | Delete".
    [[nodiscard]] std::string toolbar() const
    {
        std::string text;
        for (const auto& item : list()->toolbarItems()) {
            const bool isSpace = item->kind() == BarButtonItem::Kind::FlexibleSpace;
            text +=
                (text.empty() ? "" : " | ") + (isSpace ? "-" : item->title()) + (item->enabled() ? "" : " (disabled)");
        }
        return text;
    }
    void pressRight() { EXPECT_TRUE(list()->navigationItem.rightItems().front()->press()); }

    InstalledPlatform platform{
        {.identifier = "orvane.Absent", .localizedName = "Absent"},
        {.identifier = "orvane.Any", .localizedName = "Any", .depthOption = "Any"},
        {.identifier = "orvane.None", .localizedName = "None", .depthOption = "None"},
        {.identifier = "orvane.Odd", .localizedName = "Odd", .depthOption = "Several"},
        {.identifier = "orvane.One", .localizedName = "One", .depthOption = "One"},
    };
    const TemporaryDrive& drive = platform.drive;
    AppDelegate delegate;
    Application application{delegate, platform.stateStore()};
};

TEST_F(EditModeTest, CountsWhatIsSelectedAndComesBack)
{
    const auto list = listOf("orvane~Quillbox/Work");
    EXPECT_EQ(list->navigationItem.rightItems().front()->title(), "Select");
    pressRight();
    EXPECT_TRUE(list->editing() && list->navigationItem.hidesBackButton());
    EXPECT_EQ(list->navigationItem.title(), "Select Items");
    EXPECT_EQ(toolbar(), "New Folder | - | Move (disabled) | - | Delete (disabled)");

    list->pressRow(0);
    EXPECT_EQ(list->navigationItem.title(), "1 Item Selected");
    EXPECT_EQ(toolbar(), "New Folder | - | Move | - | Delete");
    list->pressRow(0);
    EXPECT_EQ(list->navigationItem.title(), "Select Items");

    platform.log->clear();
    list->askToSelectAll();
    pressRight();
    EXPECT_FALSE(navigation()->editMode || list->editing() || list->navigationItem.hidesBackButton());
    EXPECT_EQ(list->navigationItem.title(), "Work");
    EXPECT_EQ(list->selectedItems().count, 0U);
    EXPECT_EQ(navigation()->barButtonMoveItem, nullptr);
    EXPECT_THAT(
        platform.log->lines(),
        IsSupersetOf({
            "(TSD)[INFO] -[NavController selectAllItems:] (*) Pressed SelectAll",
            "(TSD)[DEBUG] -[NavController selectAllItems:] (*) DLC has 1 contained items",
            "(TSD)[DEBUG] -[NavController documentListControllerItemsChanged:] (*) DLC selected item count is 1",
        }));
    EXPECT_THAT(platform.log->lines(), Contains(HasSubstr("EndEditMode.  Selected 1 items: ")));
}

TEST_F(EditModeTest, EndsWithTheFolderThatWasEdited)
{
    drive.tree("orvane~Quillbox/Gone/Plan.txt");
    const auto list = listOf("orvane~Quillbox/Gone");
    pressRight();
    EXPECT_EQ(platform::installed().files.removeItem(drive.url("orvane~Quillbox/Gone"), std::nullopt), std::nullopt);
    EXPECT_TRUE(platform.runUntil([&] { return this->list() != list && !navigation()->editMode; }));
    platform.settle();
    EXPECT_EQ(this->list()->navigationItem.rightItems().front()->title(), "Select");
}

struct Selected {
    const char* folder;
    std::vector<std::string> items;
    bool move;
    bool remove;
};

TEST_F(EditModeTest, AllowsWhatTheContainersAllow)
{
    const std::string quillbox = "orvane~Quillbox/";
    const std::vector<Selected> cases = {
        {"orvane~Quillbox", {}, false, false},
        {"orvane~Quillbox", {quillbox + "Plan.txt"}, true, true},
        {"orvane~Quillbox", {quillbox + "Plan.txt", quillbox + "Work"}, true, true},
        {"orvane~Quillbox", {quillbox + "Plan.txt", kDocuments}, false, false},
        {"orvane~Quillbox", {kDesktop}, false, false},
        {"orvane~Quillbox", {"orvane~One/Documents", "orvane~Any/Documents"}, false, true},
        {"orvane~Quillbox", {"orvane~One/Documents", quillbox + "Plan.txt"}, false, false},
        {"orvane~One/Documents", {"orvane~One/Documents/Sketch.txt"}, true, true},
        {"orvane~One/Documents", {"orvane~One/Documents/Sketch.txt", "orvane~One/Documents/Folder"}, false, true},
        {"orvane~Any/Documents", {"orvane~Any/Documents/Folder"}, true, true},
        {"orvane~Absent/Documents", {"orvane~Absent/Documents/Folder"}, true, true},
        {"orvane~Odd/Documents", {"orvane~Odd/Documents/Folder"}, false, true},
    };
    for (const auto& [folder, items, move, remove] : cases) {
        const auto list = listOf(folder);
        select(items);
        EXPECT_EQ(list->selectedItems().count, items.size());
        EXPECT_EQ(MenuEnableChecks::canShowMoveForSelectedItems(*list), move) << folder << items.size();
        EXPECT_EQ(MenuEnableChecks::canShowDeleteForSelectedItems(*list), remove) << folder << items.size();
    }
}

TEST_F(EditModeTest, MakesFoldersWhereTheContainersAllowThem)
{
    const std::vector<std::tuple<std::string, bool, std::string>> cases = {
        {"orvane~Absent/Documents/Folder", true, "has no depth. Enabling"},
        {"orvane~Any/Documents/Folder", true, "supports any folder. Enabling"},
        {"orvane~None/Documents", false, "supports no folders. Disabling"},
        {"orvane~One/Documents", true, "supports one folder. File is depth 0. Enabling"},
        {"orvane~One/Documents/Folder", false, "supports one folder. File is depth 1. Disabling"},
        {"orvane~Odd/Documents", false, "has unknown depth option Several. Disabling"},
    };
    for (const auto& [folder, can, logged] : cases) {
        const auto list = listOf(folder);
        platform.log->clear();
        EXPECT_EQ(MenuEnableChecks::canEnableNewFolderForSelectedItems(*list), can) << folder;
        EXPECT_THAT(platform.log->lines(), Contains(HasSubstr(logged + " new folder button")));
    }
    const auto outside = DocumentListController::create(URL::file("/usr"));
    EXPECT_FALSE(MenuEnableChecks::canEnableNewFolderForSelectedItems(*outside));
    EXPECT_FALSE(MenuEnableChecks::containerSupportsAnyDepth(*outside));
    EXPECT_TRUE(MenuEnableChecks::containerHasSubfolders(URL::file("/usr")));
}

TEST_F(EditModeTest, LooksForFoldersAtTheContainersTopLevelOnly)
{
    EXPECT_TRUE(MenuEnableChecks::containerHasSubfolders(drive.url("orvane~One/Documents/Folder")));
    const auto top = drive.url("orvane~One/Documents");
    EXPECT_EQ(platform::installed().files.removeItem(top.appending("Folder"), std::nullopt), std::nullopt);
    drive.tree("orvane~One/Documents/.hidden/ orvane~One/Documents/Album.lookbook/Picture.png");
    EXPECT_FALSE(MenuEnableChecks::containerHasSubfolders(top));

    const auto file = drive.url("orvane~Quillbox/Plan.txt");
    EXPECT_EQ(MenuEnableChecks::numContainersInURLArray({top, file, drive.url("orvane~Any/Documents")}), 2U);
    EXPECT_EQ(MenuEnableChecks::numFoldersInURLArray({file, top.appending("Album.lookbook")}), 0U);
    EXPECT_EQ(MenuEnableChecks::numFoldersInURLArray({file, drive.url("orvane~Quillbox/Work"), top}), 1U);
    EXPECT_TRUE(MenuEnableChecks::isDesktopOrDocumentsInURLArray({file, drive.url(kDesktop)}));
    EXPECT_FALSE(MenuEnableChecks::isDesktopOrDocumentsInURLArray({file, top}));
}

} // namespace
} // namespace tessel
