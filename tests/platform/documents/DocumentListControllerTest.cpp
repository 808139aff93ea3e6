#include "platform/documents/DocumentListController.h"

#include "platform/base/NotificationCenter.h"
#include "platform/cloud/KeyValueStore.h"
#include "platform/documents/SearchController.h"
#include "platform/linux/cloud/TagAttribute.h"
#include "platform/linux/files/ExtendedAttributes.h"
#include "platform/ui/Application.h"
#include "platform/ui/NavigationController.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tessel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class Delegate final : public DocumentListControllerDelegate {
public:
    void documentListControllerDidSelectContainerWithViewController(
        DocumentListController&, const std::shared_ptr<DocumentListController>& newList) override
    {
        opened.push_back("list " + newList->title());
    }
    void documentListControllerDidSelectItemAtURL(DocumentListController&, const URL& url) override
    {
        opened.push_back("item " + std::string(url.lastPathComponent()));
    }
    void documentListControllerItemsChanged(DocumentListController&) override { changes++; }
    [[nodiscard]] std::optional<Color> documentListControllerColorOfTag(const DocumentListController&,
                                                                        const std::string& tag) const override
    {
        return tag == "Red" ? std::optional(red) : std::nullopt;
    }
    void documentListControllerURLWasRemoved(DocumentListController&) override
    {
        removals++;
        list.reset(); // the last owner goes in the middle of the call
    }

    std::vector<std::string> opened;
    int changes = 0;
    int removals = 0;
    Color red = Color::systemRed();
    std::shared_ptr<DocumentListController> list;
};

class DocumentListControllerTest : public testing::Test {
protected:
    std::shared_ptr<DocumentListController> shown(std::shared_ptr<DocumentListController> list)
    {
        list->delegate = delegate;
        list->view();
        EXPECT_TRUE(platform.runUntil([&] { return list->state() != ListState::Loading; }));
        return list;
    }
    std::shared_ptr<DocumentListController> shown(const std::string& folder)
    {
        return shown(DocumentListController::create(drive.url(folder)));
    }
    static std::vector<std::string> titles(const DocumentListController& list)
    {
        std::vector<std::string> result;
        for (std::size_t index = 0; index < list.containedItemCount(); ++index)
            result.push_back(list.row(index).title);
        return result;
    }
    static std::vector<std::string> names(const std::vector<URL>& urls)
    {
        std::vector<std::string> result;
        for (const auto& url : urls)
            result.emplace_back(url.lastPathComponent());
        return result;
    }
    std::optional<std::vector<std::string>> hierarchy(const URL& url)
    {
        const auto lists = DocumentListController::listControllerHierarchyForURL(url);
        if (!lists)
            return std::nullopt;
        std::vector<std::string> result;
        for (const auto& list : *lists)
            result.push_back(list->title());
        return result;
    }

    InstalledPlatform platform{{"orvane.Paint", "Paint"}, {"orvane.Zeichnen", "Zeichnen"}};
    const TemporaryDrive& drive = platform.drive;
    std::shared_ptr<Delegate> delegate = std::make_shared<Delegate>();
};

TEST_F(DocumentListControllerTest, ShowsLibrariesAmongTheItemsOfTheTopFolder)
{
    drive.tree("orvane~Quillbox/Alpha/ orvane~Quillbox/Quill orvane~Paint/Documents/One");
    const auto list = shown(DocumentListController::create());
    EXPECT_EQ(list->title(), "Tessel Drive");
    EXPECT_THAT(titles(*list), ElementsAre("Alpha", "Paint", "Quill", "Zeichnen"));
    EXPECT_EQ(list->row(1).kind, RowKind::Library);
    EXPECT_EQ(list->containedItemURLs()[1], drive.url("orvane~Paint/Documents"));

    // Rows move around libraries; what is told must say where.
    std::vector<RowChanges> told;
    list->rowsChanged = [&](const RowChanges& changes) { told.push_back(changes); };
    drive.file("orvane~Quillbox/Beta");
    ASSERT_TRUE(platform.runUntil([&] { return list->containedItemCount() == 5; }));
    EXPECT_THAT(told.front().inserted, ElementsAre(1));
    told.clear();
    drive.file("orvane~Quillbox/Rest");
    ASSERT_TRUE(platform.runUntil([&] { return list->containedItemCount() == 6; }));
    EXPECT_THAT(told.front().inserted, ElementsAre(4));
    fs::remove(drive.url("orvane~Quillbox/Rest").path());
    ASSERT_TRUE(platform.runUntil([&] { return list->containedItemCount() == 5; }));
    told.clear();
    fs::remove(drive.url("orvane~Quillbox/Quill").path());
    ASSERT_TRUE(platform.runUntil([&] { return list->containedItemCount() == 4; }));
    EXPECT_THAT(told.back().removed, ElementsAre(3));
    EXPECT_THAT(titles(*list), ElementsAre("Alpha", "Beta", "Paint", "Zeichnen"));

    list->setVisibleRows(0, 4);
    ASSERT_TRUE(platform.runUntil([&] { return !list->isBusy(); }));
    EXPECT_EQ(list->row(2).itemCount, 1U);
    EXPECT_EQ(list->row(0).itemCount, 0U);

    list->pressRow(2);
    EXPECT_THAT(delegate->opened, ElementsAre("list Paint"));
}

TEST_F(DocumentListControllerTest, SelectsAllAlsoOfWhatIsStillBeingRead)
{
    constexpr std::size_t kFiles = 5000;
    for (std::size_t number = 0; number < kFiles; ++number)
        drive.file("F/" + std::to_string(number));
    const auto list = DocumentListController::create(drive.url("F"));
    list->setEditing(true, Animated::No);
    std::size_t early = 0;
    list->rowsChanged = [&](const RowChanges&) {
        if (list->state() != ListState::Loading || early > 0)
            return;
        early = list->containedItemCount();
        list->selectAllRows();
        list->pressRow(3);
    };
    shown(list);
    EXPECT_GT(early, 0U);
    EXPECT_LT(early, kFiles);
    EXPECT_EQ(list->selectedItems().count, kFiles - 1);
    EXPECT_FALSE(list->isSelected(drive.url("F/3")));

    drive.file("F/Late");
    ASSERT_TRUE(platform.runUntil([&] { return list->containedItemCount() == kFiles + 1; }));
    EXPECT_FALSE(list->isSelected(drive.url("F/Late")));
}

TEST_F(DocumentListControllerTest, OpensWhatIsPressedByItsKind)
{
    drive.tree("F/Album.lookbook/ F/Folder/ F/Link->Folder F/Plan.txt");
    const auto list = shown("F");
    for (std::size_t index = 0; index < 5; ++index)
        list->pressRow(index);
    EXPECT_THAT(delegate->opened, ElementsAre("item Album.lookbook", "list Folder", "item Link", "item Plan.txt"));
}

TEST_F(DocumentListControllerTest, KeepsTheSelectionByNameWhileItemsChange)
{
    drive.tree("F/a F/b F/c F/d");
    const auto list = shown("F");
    list->setEditing(true, Animated::No);
    list->pressRow(3);
    list->pressRow(0);
    list->pressRow(1);
    list->pressRow(0);
    EXPECT_THAT(names(list->selectedItemURLs()), ElementsAre("b", "d"));
    EXPECT_THAT(delegate->opened, IsEmpty());

    fs::remove(drive.url("F/b").path());
    drive.file("F/aa");
    drive.file("F/d", "changed");
    ASSERT_TRUE(platform.runUntil([&] { return list->row(3).size == 7U; }));
    EXPECT_THAT(names(list->selectedItemURLs()), ElementsAre("d"));

    const auto before = delegate->changes;
    list->setSelectedItemURLs({drive.url("F/c"), drive.url("F/b"), drive.url("Elsewhere/a"), drive.url("F/aa")});
    EXPECT_THAT(names(list->selectedItemURLs()), ElementsAre("aa", "c"));
    EXPECT_EQ(delegate->changes, before + 1);
    list->setEditing(false, Animated::No);
    EXPECT_THAT(list->selectedItemURLs(), IsEmpty());
}

TEST_F(DocumentListControllerTest, TellsARemovedFolderOnceAndFindsItAgainWhenItIsBack)
{
    drive.tree("F/a");
    delegate->list = shown("F");
    const auto list = delegate->list;
    fs::remove_all(drive.url("F").path());
    ASSERT_TRUE(platform.runUntil([&] { return delegate->removals > 0; }));
    EXPECT_EQ(list->state(), ListState::Failed);
    EXPECT_EQ(list->failure()->code, ErrorCode::kNoSuchFile);
    EXPECT_EQ(list->containedItemCount(), 0U);

    platform.services().notifications.post(kDidBecomeActiveNotification);
    ASSERT_TRUE(platform.runUntil([&] { return list->state() == ListState::Failed; }));
    EXPECT_EQ(delegate->removals, 1);

    drive.tree("F/b");
    platform.services().notifications.post(kDidBecomeActiveNotification);
    ASSERT_TRUE(platform.runUntil([&] { return list->state() == ListState::Complete; }));
    EXPECT_FALSE(list->failure());
    EXPECT_THAT(titles(*list), ElementsAre("b"));
}

TEST_F(DocumentListControllerTest, LooksEveryFiveSecondsWhetherAFolderIsBack)
{
    drive.tree("F/a");
    const auto list = shown("F");
    fs::rename(drive.url("F").path(), drive.url("G").path());
    ASSERT_TRUE(platform.runUntil([&] { return list->state() == ListState::Failed; }));
    list->delegate.reset();
    int told = 0;
    list->rowsChanged = [&](const RowChanges&) { told++; };
    for (int attempt = 0; attempt < 3; ++attempt)
        platform.turn(5);
    EXPECT_EQ(told, 0);
    fs::rename(drive.url("G").path(), drive.url("F").path());
    EXPECT_TRUE(platform.runUntil([&] {
        platform.turn(5);
        return list->state() == ListState::Complete;
    }));
    EXPECT_FALSE(list->failure());
    EXPECT_THAT(titles(*list), ElementsAre("a"));
}

TEST_F(DocumentListControllerTest, LivesThroughItsLastOwnerGoingWhileItTells)
{
    delegate->list = shown(DocumentListController::create(drive.folder("F")));
    fs::remove(drive.url("F").path());
    EXPECT_TRUE(platform.runUntil([&] { return delegate->removals == 1; }));
    EXPECT_FALSE(delegate->list);
}

TEST_F(DocumentListControllerTest, BuildsTheListsDownToAFolderOfTheDriveOnly)
{
    drive.tree("orvane~Quillbox/A/B/ orvane~Quillbox/A/File orvane~Quillbox/A/P.lookbook/in/ orvane~Paint/Documents/X/ "
               "Elsewhere/Y/ link->orvane~Quillbox/A");
    const auto list = [](auto... titles) { return std::optional(std::vector<std::string>{titles...}); };
    EXPECT_EQ(hierarchy(drive.url("orvane~Quillbox")), list("Tessel Drive"));
    EXPECT_EQ(hierarchy(drive.url("orvane~Quillbox/A/B")), list("Tessel Drive", "A", "B"));
    EXPECT_EQ(hierarchy(drive.url("orvane~Paint/Documents/X")), list("Tessel Drive", "Paint", "X"));
    EXPECT_EQ(hierarchy(drive.url("link/B")), list("Tessel Drive", "A", "B"));
    for (const auto* const other : {"orvane~Quillbox/A/File", "orvane~Quillbox/A/P.lookbook",
                                    "orvane~Quillbox/A/P.lookbook/in", "orvane~Quillbox/None", "Elsewhere/Y"})
        EXPECT_EQ(hierarchy(drive.url(other)), std::nullopt) << other;
}

TEST_F(DocumentListControllerTest, FetchesDetailsOfVisibleRowsAgainWhenTheyMayHaveChanged)
{
    drive.tree("F/Sub/one");
    const auto list = shown("F");
    EXPECT_EQ(list->row(0).itemCount, std::nullopt);
    list->setVisibleRows(0, 10);
    ASSERT_TRUE(platform.runUntil([&] { return list->row(0).itemCount == 1U; }));
    drive.file("F/Sub/two");
    EXPECT_TRUE(platform.runUntil([&] { return list->row(0).itemCount == 2U; }));

    // A new tag changes no attribute that the row shows.
    if (setExtendedAttribute(drive.url("F/Sub"), kTagAttribute, "Red"))
        GTEST_SKIP() << "this file system keeps no attributes";
    EXPECT_TRUE(platform.runUntil([&] {
        return list->row(0).tags == std::vector<ListTag>{{"Red", Color::systemRed()}};
    }));

    delegate->red = Color::systemOrange();
    RowChanges told;
    list->rowsChanged = [&](const RowChanges& changes) { told = changes; };
    platform.services().notifications.post(kKeyValueStoreChangedNotification);
    EXPECT_THAT(told.updated, ElementsAre(0));
    EXPECT_EQ(list->row(0).tags.front().color, Color::systemOrange());
}

TEST_F(DocumentListControllerTest, PresentsSortedSearchResultsWhileThereIsAQuery)
{
    drive.tree("F/Plan10 F/Deep/plan2 F/Other F/Deep/Plans/");
    const auto list = shown("F");
    list->startSearch("plan"); // on no stack: nowhere to present it
    const auto navigation = std::make_shared<NavigationController>();
    navigation->setViewControllers({list}, Animated::No);
    list->startSearch("plan");
    const auto search = std::dynamic_pointer_cast<SearchController>(navigation->presentedViewController());
    ASSERT_TRUE(search);
    ASSERT_TRUE(platform.runUntil([&] { return !search->isBusy(); }));
    std::vector<std::string> found;
    for (const auto& row : search->results())
        found.push_back(row.title);
    EXPECT_THAT(found, ElementsAre("plan2", "Plan10", "Plans"));
    search->pressResult(0);
    search->pressResult(2);
    EXPECT_THAT(delegate->opened, ElementsAre("item plan2", "list Plans"));

    list->startSearch("");
    EXPECT_EQ(navigation->presentedViewController(), nullptr);
    list->startSearch("other");
    const auto again = std::dynamic_pointer_cast<SearchController>(navigation->presentedViewController());
    ASSERT_TRUE(again);
    EXPECT_TRUE(again->isBusy());
    navigation->dismiss(Animated::No);
    EXPECT_FALSE(again->isBusy());
}

} // namespace
} // namespace tessel
