#include "platform/documents/DocumentTargetSelectionController.h"

#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Picker = DocumentTargetSelectionController;

class Chooser final : public DocumentTargetSelectionControllerDelegate {
public:
    void documentTargetSelectionControllerDidSelectItemAtURL(Picker&, const URL& folder) override
    {
        chosen.push_back(folder);
    }
    void documentTargetSelectionControllerWantsNewFolder(Picker&, const URL& folder,
                                                         const std::function<void(const URL&)>& made) override
    {
        const auto url = folder.appending("New");
        std::filesystem::create_directory(url.path());
        made(url);
    }

    std::vector<URL> chosen;
};

/// A drive with a library of each depth.
class DocumentTargetSelectionControllerTest : public testing::Test {
protected:
    DocumentTargetSelectionControllerTest()
    {
        drive.tree("orvane~Quillbox/Plan.txt orvane~Quillbox/Link->Work orvane~Quillbox/Album.lookbook/ "
                   "orvane~Quillbox/Work/Deep/ orvane~Quillbox/Work/Notes.txt orvane~Quillbox/Other/");
        for (const auto* library : {"None", "One", "Any", "Odd"})
            drive.tree("orvane~" + std::string(library) + "/Documents/Folder/ orvane~" + library + "/Documents/File");
    }
    void pick(const std::vector<std::string>& items, Picker::Kind kind)
    {
        std::vector<URL> urls;
        for (const auto& item : items)
            urls.push_back(drive.url(item));
        picker = Picker::create(urls, kind);
        ASSERT_NE(picker, nullptr);
        picker->targetDelegate = chooser;
    }
    [[nodiscard]] std::shared_ptr<DocumentListController> list()
    {
        auto list = std::dynamic_pointer_cast<DocumentListController>(picker->topViewController());
        list->view();
        EXPECT_TRUE(platform.runUntil([&] { return list->state() != ListState::Loading; }));
        return list;
    }
    /// The titles of the rows, those in brackets that cannot be pressed.
    [[nodiscard]] std::vector<std::string> rows()
    {
        std::vector<std::string> rows;
        for (std::size_t index = 0; index < list()->containedItemCount(); ++index) {
            const auto row = list()->row(index);
            rows.push_back(row.enabled ? row.title : "(" + row.title + ")");
        }
        return rows;
    }
    void go(const std::string& title)
    {
        const auto shown = list();
        for (std::size_t index = 0; index < shown->containedItemCount(); ++index)
            if (shown->row(index).title == title)
                return shown->pressRow(index);
        FAIL() << title;
    }
    [[nodiscard]] bool press(const std::string& title)
    {
        for (const auto& item : picker->topViewController()->toolbarItems())
            if (item->title() == title)
                return item->press();
        return false;
    }

    InstalledPlatform platform{
        {.identifier = "orvane.Any", .localizedName = "Any", .depthOption = "Any"},
        {.identifier = "orvane.None", .localizedName = "None", .depthOption = "None"},
        {.identifier = "orvane.Odd", .localizedName = "Odd", .depthOption = "Several"},
        {.identifier = "orvane.One", .localizedName = "One", .depthOption = "One"},
    };
    const TemporaryDrive& drive = platform.drive;
    std::shared_ptr<Chooser> chooser = std::make_shared<Chooser>();
    std::shared_ptr<Picker> picker;
};

TEST_F(DocumentTargetSelectionControllerTest, BeginsWhereTheItemsAreAndShowsFolders)
{
    pick({"orvane~Quillbox/Work/Deep", "orvane~Quillbox/Work/Notes.txt"}, Picker::Kind::WithinContainer);
    EXPECT_EQ(list()->navigationItem.prompt(), "Move 2 Items");
    EXPECT_EQ(list()->title(), "Work");
    EXPECT_THAT(rows(), ElementsAre("(Deep)")) << "what is moved cannot be gone into";
    go("Deep");
    EXPECT_EQ(list()->title(), "Work");
    EXPECT_FALSE(press("Move")) << "they are there already";

    picker->pressBack();
    EXPECT_THAT(rows(), ElementsAre("Other", "Work")) << "no files, packages, links and libraries";
    drive.tree("orvane~Quillbox/A.txt orvane~Quillbox/Added/");
    EXPECT_TRUE(platform.runUntil([&] { return list()->containedItemCount() == 3; }));
    EXPECT_THAT(rows(), ElementsAre("Added", "Other", "Work"));
    go("Added");
    EXPECT_TRUE(press("New Folder"));
    EXPECT_TRUE(press("Move"));
    EXPECT_THAT(chooser->chosen, ElementsAre(drive.url("orvane~Quillbox/Added/New")));

    std::filesystem::remove_all(drive.url("orvane~Quillbox/Added").path());
    EXPECT_TRUE(platform.runUntil([&] { return picker->viewControllers().size() == 1; })) << "they went away";
    EXPECT_EQ(Picker::create({}, Picker::Kind::WithinContainer), nullptr);
    EXPECT_EQ(Picker::create({URL::file("/tmp/file")}, Picker::Kind::AcrossContainers), nullptr);
}

TEST_F(DocumentTargetSelectionControllerTest, FilesGetIntoEveryLibrary)
{
    pick({"orvane~Quillbox/Plan.txt"}, Picker::Kind::AcrossContainers);
    EXPECT_THAT(rows(), ElementsAre("Any", "None", "Odd", "One", "Other", "Work"));
    go("None");
    EXPECT_THAT(rows(), ElementsAre("Folder"));
    EXPECT_FALSE(press("New Folder"));
    EXPECT_TRUE(press("Move"));
    go("Folder");
    EXPECT_TRUE(press("Move"));
    EXPECT_THAT(chooser->chosen,
                ElementsAre(drive.url("orvane~None/Documents"), drive.url("orvane~None/Documents/Folder")));
}

TEST_F(DocumentTargetSelectionControllerTest, FoldersGetNoDeeperThanLibrariesAllow)
{
    pick({"orvane~Quillbox/Work"}, Picker::Kind::AcrossContainers);
    EXPECT_THAT(rows(), ElementsAre("Any", "One", "Other", "(Work)"));
    go("One");
    EXPECT_THAT(rows(), IsEmpty());
    EXPECT_FALSE(press("New Folder")) << "nothing could be moved into it";
    EXPECT_TRUE(press("Move"));
    picker->pressBack();
    go("Any");
    go("Folder");
    EXPECT_TRUE(press("Move"));

    pick({"orvane~One/Documents/Folder"}, Picker::Kind::WithinContainer);
    EXPECT_EQ(picker->viewControllers().size(), 1U) << "the library is all there is";
    EXPECT_THAT(rows(), IsEmpty());
    pick({"orvane~One/Documents/File"}, Picker::Kind::AcrossContainers);
    EXPECT_EQ(list()->title(), "One");
    EXPECT_THAT(rows(), ElementsAre("Folder"));
    picker->pressBack();
    EXPECT_EQ(list()->title(), "Tessel Drive");
}

} // namespace
} // namespace tessel
