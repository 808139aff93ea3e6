#include "platform/qt/lists/SearchList.h"

#include "platform/qt/lists/FolderList.h"
#include "platform/ui/NavigationController.h"
#include "tests/platform/qt/ListWatcher.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

namespace tessel::qt {
namespace {

using testing::ElementsAre;

class SearchListTest : public testing::Test {
protected:
    SearchListTest()
    {
        drive.tree("orvane~Quillbox/Plan10 orvane~Quillbox/Deep/Er/plan2 orvane~Quillbox/Other "
                   "orvane~Paint/Documents/Plans/plan3");
        controller = DocumentListController::create();
        navigation->setViewControllers({controller}, Animated::No);
        controller->view();
        platform.runUntil([&] { return controller->state() == ListState::Complete; });
    }
    void search(FolderList& list, const char* query)
    {
        list.search(query);
        ASSERT_TRUE(list.results());
        ASSERT_TRUE(platform.runUntil([&] { return !list.results()->busy(); }));
    }

    InstalledPlatform platform{{"orvane.Paint", "Paint"}};
    const TemporaryDrive& drive = platform.drive;
    std::shared_ptr<NavigationController> navigation = std::make_shared<NavigationController>();
    std::shared_ptr<DocumentListController> controller;
};

TEST_F(SearchListTest, ShowsResultsAsTheyComeAndWhereTheyLie)
{
    FolderList list(controller);
    list.search("p");
    ASSERT_TRUE(list.results());
    EXPECT_TRUE(list.results()->busy());
    const ListWatcher watcher(*list.results());
    ASSERT_TRUE(platform.runUntil([&] { return !list.results()->busy(); }));
    std::vector<std::string> rows;
    for (const auto& row : watcher.rows)
        rows.push_back((row.title + ": " + row.subtitle).toStdString());
    EXPECT_THAT(rows, ElementsAre("Deep: Tessel Drive", "Paint: Tessel Drive", "plan2: Tessel Drive › Deep › Er",
                                  "plan3: Paint › Plans", "Plan10: Tessel Drive", "Plans: Paint"));
    EXPECT_EQ(watcher.resets, 0) << "results are only added";
    EXPECT_THAT(list.results()->accessibleName(3).toStdString(), testing::HasSubstr("plan3, Document, "));

    search(list, "other");
    EXPECT_EQ(list.searchText(), "other");
    ASSERT_EQ(watcher.rows.size(), 1U);
    EXPECT_EQ(watcher.rows[0].title, "Other");
}

TEST_F(SearchListTest, EndsWithTheSearchWhoeverEndsIt)
{
    FolderList list(controller);
    int told = 0;
    QObject::connect(&list, &FolderList::searchingChanged, [&] { told++; });
    search(list, "plan");
    EXPECT_TRUE(list.searching());
    EXPECT_EQ(told, 1);
    const QPointer results = list.results();
    list.endSearch();
    EXPECT_FALSE(list.searching());
    EXPECT_EQ(list.results(), nullptr);
    EXPECT_EQ(told, 2);
    ASSERT_TRUE(results) << "QML may be inside one of its handlers";
    results->press(0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(results);

    controller->startSearch("plan"); // from elsewhere
    list.sync();
    EXPECT_EQ(list.searchText(), "plan");
    navigation->dismiss(Animated::No);
    list.sync();
    EXPECT_FALSE(list.searching());
    EXPECT_EQ(told, 4);
}

} // namespace
} // namespace tessel::qt
