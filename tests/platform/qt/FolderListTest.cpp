#include "platform/qt/lists/FolderList.h"

#include "platform/console/ScreenReader.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/cloud/TagAttribute.h"
#include "platform/linux/files/ExtendedAttributes.h"
#include "platform/text/TextServices.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/Window.h"
#include "tests/platform/qt/ListWatcher.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <random>
#include <set>

namespace tessel::qt {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

class Delegate final : public DocumentListControllerDelegate {
public:
    void documentListControllerDidSelectContainerWithViewController(
        DocumentListController&, const std::shared_ptr<DocumentListController>& newList) override
    {
        done.push_back("list " + newList->title());
    }
    void documentListControllerDidSelectItemAtURL(DocumentListController&, const URL& url) override
    {
        done.push_back("item " + std::string(url.lastPathComponent()));
    }
    void documentListControllerSelectAllItems(DocumentListController& list) override { list.selectAllRows(); }
    void documentListControllerItemsChanged(DocumentListController&) override {}
    void documentListControllerPerformAction(DocumentListController&, int action, const URL& url,
                                             const std::shared_ptr<View>&, const std::function<void()>&) override
    {
        done.push_back(std::to_string(action) + " " + std::string(url.lastPathComponent()));
    }
    bool documentListControllerCanPerformAction(const DocumentListController&, ListAction action) const override
    {
        return action != ListAction::Share;
    }
    std::optional<Color> documentListControllerColorOfTag(const DocumentListController&,
                                                          const std::string& tag) const override
    {
        return tag == "Red" ? std::optional(Color::systemRed()) : std::nullopt;
    }
    void documentListControllerURLWasRemoved(DocumentListController&) override {}

    std::vector<std::string> done;
};

class FolderListTest : public testing::Test {
protected:
    std::shared_ptr<DocumentListController> shown(std::shared_ptr<DocumentListController> controller)
    {
        controller->delegate = delegate;
        controller->view();
        EXPECT_TRUE(platform.runUntil([&] { return controller->state() != ListState::Loading; }));
        return controller;
    }
    std::shared_ptr<DocumentListController> shown(const std::string& folder)
    {
        return shown(DocumentListController::create(drive.url(folder)));
    }
    /// Lets a list show what is on disk now.
    void follow(const FolderList& list, const std::string& folder)
    {
        std::set<std::string> names;
        std::uintmax_t bytes = 0;
        for (const auto& item : fs::directory_iterator(drive.url(folder).path())) {
            names.insert(item.path().filename());
            bytes += item.file_size();
        }
        const auto isShown = [&] {
            std::set<std::string> titles;
            std::uintmax_t shownBytes = 0;
            for (std::size_t row = 0; row < controller->containedItemCount(); ++row) {
                titles.insert(controller->row(row).title);
                shownBytes += controller->row(row).size.value_or(0);
            }
            return titles == names && shownBytes == bytes;
        };
        ASSERT_TRUE(platform.runUntil(isShown));
        ASSERT_EQ(list.count(), static_cast<int>(controller->containedItemCount()));
    }
    static std::vector<std::string> titles(const RowListModel& list)
    {
        std::vector<std::string> result;
        for (int row = 0; row < list.count(); ++row)
            result.push_back(list.row(row).title.toStdString());
        return result;
    }

    InstalledPlatform platform{{"orvane.Paint", "Paint"}};
    const TemporaryDrive& drive = platform.drive;
    std::shared_ptr<Delegate> delegate = std::make_shared<Delegate>();
    std::shared_ptr<DocumentListController> controller;
};

// Views keep what they are told row by row: one wrong range, or a row read at a moment when it stood for another one,
// and they show a list that is not there until the folder is left.
TEST_F(FolderListTest, TellsExactlyWhatChangesInAFolder)
{
    std::mt19937 random(20261122); // NOLINT(bugprone-random-generator-seed): the same bursts each time
    const auto anyName = [&] { return "F/item " + std::to_string(random() % 120); };
    drive.folder("F");
    for (int file = 0; file < 60; ++file)
        drive.file(anyName(), "x");
    controller = shown("F");
    FolderList list(controller);
    const ListWatcher watcher(list);

    for (int burst = 0; burst < 25; ++burst) {
        for (auto change = random() % 40; change > 0; --change) {
            if (const auto name = anyName(); random() % 2 == 0)
                drive.file(name, std::string(random() % 50, 'x'));
            else
                fs::remove(drive.url(name).path());
        }
        follow(list, "F");
        for (int row = 0; row < list.count(); ++row)
            ASSERT_EQ(watcher.rows[static_cast<std::size_t>(row)], list.row(row)) << "burst " << burst;
    }
    EXPECT_EQ(watcher.resets, 0);
    EXPECT_GT(watcher.insertedRuns, 25);

    fs::remove_all(drive.url("F").path());
    ASSERT_TRUE(platform.runUntil([&] { return list.state() == FolderList::Failed; }));
    EXPECT_EQ(list.count(), 0);
    EXPECT_EQ(list.failureText(), "No such file or directory");
}

std::string consoleText(const RowValue& row)
{
    std::string text = row.kind.toStdString() + " | " + row.title.toStdString();
    const auto size = row.subtitle.section(" · ", 0, 0);
    if (row.subtitle.contains(" · ") || row.kind == "library")
        text += " | " + size.toStdString();
    for (const auto& tag : row.tags)
        text += (&tag == &row.tags.front() ? " | tags " : ", ") + tag.toMap()["name"].toString().toStdString();
    return text + (row.inCloud ? " | in the cloud" : "");
}

TEST_F(FolderListTest, SaysTheSameAsTheConsole)
{
    drive.tree("orvane~Quillbox/Album.lookbook/a orvane~Quillbox/Sub/one orvane~Quillbox/link->Sub");
    for (const auto* name : {"Plan.txt", "two\nlines", "not UTF-8 \xff\xc3", "right \xe2\x80\xae to left", "a|b?c#d%41",
                             "  ", "שלום.pdf", "e\xcc\x81t\xc3\xa9", "😀", "item 10", "item 9"})
        drive.file(std::string("orvane~Quillbox/") + name, "content");
    drive.file("orvane~Quillbox/" + std::string(251, 'w') + ".txt");
    PlaceholderRecord record;
    record.name = "Away.txt";
    record.size = 1'234'567;
    record.type = "public.plain-text";
    record.identifier = "id";
    record.modificationDate = Date{5};
    ASSERT_FALSE(writePlaceholder(drive.url("orvane~Quillbox/Away.txt"), record));
    const bool keepsTags =
        !setExtendedAttribute(drive.url("orvane~Quillbox/Plan.txt"), kTagAttribute, "Red,\xe2\x80\xaeWork");

    controller = DocumentListController::create();
    controller->delegate = delegate;
    const auto navigation = std::make_shared<NavigationController>();
    navigation->setViewControllers({controller}, Animated::No);
    const auto window = std::make_shared<Window>(Rect{0, 0, 400, 800});
    window->setRootViewController(navigation);
    window->makeKeyAndVisible();
    FolderList list(controller);
    list.setVisibleRange(0, 100);
    platform.settle();

    std::vector<std::string> expected;
    for (const auto& element : readScreen())
        if (element.isRow())
            expected.push_back(element.text());
    std::vector<std::string> rows;
    for (int row = 0; row < list.count(); ++row)
        rows.push_back(consoleText(list.row(row)));
    EXPECT_EQ(rows, expected);
    EXPECT_EQ(rows.size(), 17U);

    const auto plan = list.row(list.find("plan", 0));
    EXPECT_EQ(plan.subtitle.section(" · ", 0, 0), "7 bytes");
    if (keepsTags) {
        EXPECT_EQ(plan.tags[0].toMap()["color"].toString(), "#e5483d");
        EXPECT_EQ(plan.tags[1].toMap()["color"].toString(), "#00000000");
        EXPECT_THAT(plan.accessibleName.toStdString(), testing::StartsWith("Plan.txt, Document, 7 bytes, "));
        EXPECT_THAT(plan.accessibleName.toStdString(), testing::EndsWith(", Tags: Red, \xef\xbf\xbdWork"));
    }
    EXPECT_TRUE(list.row(list.find("away", 0)).accessibleName.endsWith(", in the cloud"));
}

TEST_F(FolderListTest, NamesIconsAndThumbnailsByTypeWithEveryByteOfThePath)
{
    drive.tree("F/a.PNG F/empty.png F/b.zip F/Sub/");
    drive.file("F/a.PNG", "x");
    drive.file("F/b.zip", "x");
    drive.file("F/\xff ?#%.txt", "x");
    controller = shown("F");
    const FolderList list(controller);
    const auto image = list.row(list.find("a", 0));
    EXPECT_EQ(image.iconSource, "image://icon/image-x-generic?file");
    EXPECT_EQ(list.row(list.find("b", 0)).iconSource, "image://icon/package-x-generic?file");
    EXPECT_EQ(list.row(list.find("sub", 0)).iconSource, "image://icon/folder?folder");
    EXPECT_EQ(list.row(list.find("b", 0)).thumbnailSource, "");
    EXPECT_EQ(list.row(list.find("empty", 0)).thumbnailSource, "");
    EXPECT_THAT(list.row(list.find("\ufffd", 0)).thumbnailSource.toStdString(),
                testing::HasSubstr("/F/%FF%20%3F%23%25.txt?"));

    fs::last_write_time(drive.url("F/a.PNG").path(), fs::file_time_type::clock::now() - std::chrono::hours(1));
    EXPECT_TRUE(platform.runUntil([&] { return list.row(0).thumbnailSource != image.thumbnailSource; }));
    EXPECT_THAT(image.thumbnailSource.toStdString(), testing::StartsWith("image://thumbnail/"));
}

TEST_F(FolderListTest, ReadsTheFolderOnlyWhenItIsShownAndDetailsOnlyOfWhatIsSeen)
{
    drive.tree("F/A/one F/B/one F/C/");
    controller = DocumentListController::create(drive.url("F"));
    FolderList list(controller);
    ListWatcher watcher(list);
    list.setCovered(true);
    list.setVisibleRange(0, 3);
    list.sync();
    platform.settle();
    EXPECT_FALSE(controller->isBusy());
    EXPECT_EQ(list.count(), 0);

    list.setVisibleRange(1, 1);
    list.setCovered(false);
    ASSERT_TRUE(platform.runUntil([&] { return list.row(1).subtitle.startsWith("1 item ·"); }));
    EXPECT_EQ(controller->row(0).itemCount, std::nullopt);
    EXPECT_EQ(watcher.updatedRows, 1);
    EXPECT_EQ(watcher.rows[1], list.row(1));

    list.setCovered(true);
    drive.file("F/B/two");
    list.setCovered(false);
    EXPECT_TRUE(platform.runUntil([&] { return list.row(1).subtitle.startsWith("2 items ·"); }));
}

TEST_F(FolderListTest, SelectsWhileEditingAndActsOnTheRowThatWasMeant)
{
    drive.tree("orvane~Quillbox/a orvane~Quillbox/b orvane~Quillbox/z");
    controller = shown(DocumentListController::create());
    FolderList list(controller);
    ListWatcher watcher(list);
    list.toggle(0);
    list.selectAll();
    EXPECT_EQ(list.firstSelected(), -1) << "nothing is selected outside editing";

    controller->setEditing(true, Animated::No);
    list.sync();
    EXPECT_TRUE(list.editing());
    list.press(2);
    EXPECT_EQ(list.firstSelected(), 2) << "a library";
    list.toggle(1);
    EXPECT_EQ(list.firstSelected(), 1);
    EXPECT_TRUE(watcher.rows[1].selected && watcher.rows[2].selected && !watcher.rows[3].selected);
    list.selectAll();
    EXPECT_TRUE(watcher.rows[0].selected && watcher.rows[3].selected);
    list.clearSelection();
    EXPECT_EQ(list.firstSelected(), -1);
    controller->setEditing(false, Animated::No);

    controller->offeredActions = 1U << 0 | 1U << 3 | 1U << 4;
    const auto actions = list.actions();
    ASSERT_EQ(actions.size(), 2);
    EXPECT_EQ(actions[0].toMap()["title"], "Rename");
    EXPECT_EQ(actions[1].toMap(),
              (QVariantMap{{"code", 0}, {"title", "Delete"}, {"symbol", "trash"}, {"destructive", true}}));

    const auto meant = list.track(1);
    drive.file("orvane~Quillbox/aa");
    ASSERT_TRUE(platform.runUntil([&] { return list.count() == 5; }));
    list.perform(meant.row(), 3);
    fs::remove(drive.url("orvane~Quillbox/b").path());
    ASSERT_TRUE(platform.runUntil([&] { return list.count() == 4; }));
    list.perform(meant.row(), 0);
    list.press(0);
    list.press(2);
    list.press(99);
    EXPECT_THAT(delegate->done, ElementsAre("3 b", "item a", "list Paint"));
}

TEST_F(FolderListTest, FindsTheNextTitleThatStartsWithWhatIsTyped)
{
    drive.folder("F");
    for (int file = 0; file < 900; ++file)
        drive.file("F/m" + std::to_string(file));
    drive.tree("F/1 F/2 F/10 F/alpha F/Beta F/zulu");
    drive.file("F/Élan");
    drive.file("F/e\u0301tude");
    controller = shown("F");
    const FolderList list(controller);
    const auto found = [&](const char* prefix, int from) {
        const auto row = list.find(prefix, from);
        return row < 0 ? "none" : list.row(row).title.normalized(QString::NormalizationForm_C).toStdString();
    };
    EXPECT_EQ(found("1", 0), "1");
    EXPECT_EQ(found("1", 1), "10") << "numbers are sorted by value";
    EXPECT_EQ(found("b", 0), "Beta");
    EXPECT_EQ(found("B", list.count() - 1), "Beta") << "from the beginning again";
    EXPECT_EQ(found("el", 0), "Élan");
    EXPECT_EQ(found("é", 6), "étude");
    EXPECT_EQ(found("zu", 0), "zulu") << "far behind";
    EXPECT_EQ(found("m899", 0), "m899");
    EXPECT_EQ(found("nothing", 0), "none");
    EXPECT_EQ(found("", 0), "none");
}

TEST_F(FolderListTest, OutlivesItsControllerAndGivesWayToTheNextList)
{
    drive.tree("F/a F/b");
    controller = shown("F");
    auto leaving = std::make_unique<FolderList>(controller);
    FolderList list(controller);
    const ListWatcher watcher(list);
    leaving.reset();
    drive.file("F/c");
    ASSERT_TRUE(platform.runUntil([&] { return controller->containedItemCount() == 3; }));
    EXPECT_THAT(titles(list), ElementsAre("a", "b", "c"));

    controller.reset();
    EXPECT_THAT(titles(list), ElementsAre("", "", ""));
    list.press(0);
    list.perform(0, 0);
    list.setVisibleRange(0, 3);
    list.search("a");
    list.sync();
    EXPECT_EQ(list.find("a", 0), -1);
    EXPECT_TRUE(list.actions().isEmpty());
    EXPECT_TRUE(delegate->done.empty());
}

} // namespace
} // namespace tessel::qt
