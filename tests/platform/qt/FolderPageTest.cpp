#include "platform/ui/AlertController.h"
#include "tests/platform/qt/SceneFixture.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tessel::qt {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FolderPageTest : public SceneFixture {
protected:
    /// Files named "item 10" and so on, more than fit the window.
    std::shared_ptr<DocumentListController> openLongList()
    {
        for (int number = 10; number < 70; ++number)
            platform.drive.file("item " + std::to_string(number));
        return openDrive();
    }
    /// Uncovers the actions of a row.
    void swipe(const QString& title) const
    {
        const auto middle = middleOf(called(title));
        drag({middle + QPoint(150, 0), middle - QPoint(150, 0)});
    }
    [[nodiscard]] double topOf(const QString& title) const
    {
        const auto* const row = called(title);
        return row ? row->mapToScene({}).y() : -1;
    }
};

TEST_F(FolderPageTest, ASwipeUncoversTheActionsOfOneRowUntilSomethingElseIsTouched)
{
    openLongList();
    swipe("item 11");
    ASSERT_TRUE(becomes([&] { return called("Delete") && middleOf(called("Delete")).x() < 400; }));
    EXPECT_EQ(middleOf(called("Delete")).y(), middleOf(called("item 11")).y());

    swipe("item 13");
    ASSERT_TRUE(becomes([&] { return items("swipe").size() == 1; }));
    EXPECT_EQ(middleOf(item("swipe")).y(), middleOf(called("item 13")).y());
    tap({20, middleOf(called("item 13")).y()});
    ASSERT_TRUE(becomes([&] { return items("swipe").empty(); }));
    EXPECT_THAT(told->done, IsEmpty());

    swipe("item 12");
    ASSERT_TRUE(becomes([&] { return called("Delete") && middleOf(called("Delete")).x() < 400; }));
    tap(called("Delete"));
    EXPECT_THAT(told->done, ElementsAre("0 item 12"));
    ASSERT_TRUE(becomes([&] { return items("swipe").empty(); }));

    swipe("item 12");
    ASSERT_TRUE(becomes([&] { return !items("swipe").empty(); }));
    item("folderList")->setProperty("contentY", 40); // as a wheel does
    EXPECT_TRUE(becomes([&] { return items("swipe").empty(); }));
    EXPECT_THAT(told->done, ElementsAre("0 item 12"));
}

TEST_F(FolderPageTest, AListShowsWhereOneIsOnlyWhenItMoves)
{
    openLongList();
    EXPECT_TRUE(items("scrollThumb").empty());
    item("folderList")->setProperty("contentY", 40);
    EXPECT_TRUE(becomes([&] { return !items("scrollThumb").empty(); }));
}

// While the finger lies on a row, another program saves a document above it.
TEST_F(FolderPageTest, AMenuActsOnTheItemThatItWasOpenedFor)
{
    const auto list = openLongList();
    const auto finger = middleOf(called("item 12"));
    drag({finger}, false);
    ASSERT_TRUE(becomes([&] { return item("menu") != nullptr; }));
    platform.drive.file("before all");
    ASSERT_TRUE(becomes([&] { return list->containedItemCount() == 61; }));
    lift(finger);
    tap(called("Rename"));
    EXPECT_THAT(told->done, ElementsAre("3 item 12"));
    EXPECT_TRUE(becomes([&] { return item("menu") == nullptr; }));

    QTest::mouseClick(scene->window(), Qt::RightButton, {}, middleOf(called("item 13")));
    ASSERT_TRUE(becomes([&] { return item("menu") != nullptr; }));
    QTest::mouseClick(scene->window(), Qt::LeftButton, {}, {200, 20}); // beside it, over the title
    EXPECT_TRUE(becomes([&] { return item("menu") == nullptr; }));
    EXPECT_EQ(told->done.size(), 1U);
}

TEST_F(FolderPageTest, WhatIsOnScreenStaysInPlaceWhileItemsComeAndGoAbove)
{
    const auto list = openLongList();
    auto* const view = item("folderList");
    view->setProperty("contentY", 1500);
    ASSERT_TRUE(becomes([&] { return called("item 37") != nullptr; }));
    const auto place = topOf("item 37");

    platform.drive.tree("a b c d/");
    ASSERT_TRUE(becomes([&] { return list->containedItemCount() == 64; }));
    EXPECT_EQ(topOf("item 37"), place);
    for (const auto* const name : {"a", "d", "item 10", "item 11", "item 20"})
        std::filesystem::remove(platform.drive.url(name).path());
    ASSERT_TRUE(becomes([&] { return list->containedItemCount() == 59; }));
    EXPECT_EQ(topOf("item 37"), place);
}

TEST_F(FolderPageTest, FetchesDetailsOfTheRowsThatAreScrolledTo)
{
    for (int number = 10; number < 70; ++number)
        platform.drive.file("folder " + std::to_string(number) + "/inside");
    const auto list = openDrive();
    const auto details = [&](const QString& title) {
        const auto* const row = called(title);
        return row ? row->property("row").value<RowValue>().subtitle.section(" ·", 0, 0) : "";
    };
    ASSERT_TRUE(becomes([&] { return list->containedItemCount() == 60 && details("folder 10") == "1 item"; }));
    ASSERT_TRUE(becomes([&] { return item("folderList")->property("count") == 60; }));
    settle();
    EXPECT_EQ(list->row(59).itemCount, std::nullopt);
    QMetaObject::invokeMethod(item("folderList"), "positionViewAtEnd");
    EXPECT_TRUE(becomes([&] { return details("folder 69") == "1 item"; }));
    QTest::mouseClick(scene->window(), Qt::LeftButton, {}, middleOf(item("modeSwitch")));
    ASSERT_TRUE(becomes([&] { return item("folderGrid") != nullptr; }));
    QMetaObject::invokeMethod(item("folderGrid"), "positionViewAtBeginning");
    EXPECT_TRUE(becomes([&] { return details("folder 15") == "1 item"; }));
    DocumentListController::setListMode(ListMode::Rows);
}

TEST_F(FolderPageTest, ADoubleClickOpensOnceAndSelectsTwice)
{
    const auto list = openLongList();
    const auto middle = middleOf(called("item 12"));
    QTest::mouseDClick(scene->window(), Qt::LeftButton, {}, middle);
    EXPECT_THAT(told->done, ElementsAre("item item 12"));
    list->setEditing(true, Animated::No);
    ASSERT_TRUE(becomes([&] { return item("folderList")->property("editing").toBool(); }));
    tap(called("item 12"));
    EXPECT_EQ(list->selectedItemURLs().size(), 1U);
    tap(called("item 12"));
    EXPECT_THAT(list->selectedItemURLs(), IsEmpty());
}

TEST_F(FolderPageTest, ATouchThatStopsAMovingListOpensNothing)
{
    openLongList();
    QMetaObject::invokeMethod(item("folderList"), "flick", Q_ARG(double, 0), Q_ARG(double, -3000));
    ASSERT_TRUE(becomes([&] { return item("folderList")->property("contentY").toDouble() > 50; }));
    tap({200, 300});
    EXPECT_TRUE(becomes([&] { return !item("folderList")->property("moving").toBool(); }));
    EXPECT_THAT(told->done, IsEmpty());
    tap({200, 300});
    EXPECT_EQ(told->done.size(), 1U);
}

TEST_F(FolderPageTest, TheKeyboardReachesAllThatTouchDoes)
{
    platform.drive.tree("Album/ Budget Plan Trips/ Trips/Plan");
    const auto list = openDrive();
    auto* const view = item("folderList");
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    key(Qt::Key_F2);
    key(Qt::Key_Delete);
    key(Qt::Key_P);
    key(Qt::Key_Return);
    EXPECT_THAT(told->done, ElementsAre("item Budget", "3 Budget", "0 Budget", "item Plan"));

    key(Qt::Key_F10, Qt::ShiftModifier);
    ASSERT_TRUE(becomes([&] { return item("menu") != nullptr; }));
    key(Qt::Key_Tab);
    key(Qt::Key_Return); // the second entry
    EXPECT_EQ(told->done.back(), "6 Plan");
    ASSERT_TRUE(becomes([&] { return item("menu") == nullptr; }));
    EXPECT_TRUE(view->hasActiveFocus());

    for (const auto leave : {Qt::Key_Escape, Qt::Key_Return}) {
        told->done.clear();
        key(Qt::Key_Space);
        ASSERT_TRUE(becomes([&] { return item("peek") != nullptr; }));
        key(leave);
        ASSERT_TRUE(becomes([&] { return item("peek") == nullptr; }));
        EXPECT_EQ(told->done.size(), leave == Qt::Key_Return ? 1U : 0U);
    }
    EXPECT_THAT(told->done, ElementsAre("6 Plan"));

    key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(item("searchField")->hasActiveFocus() && list->searchFieldIsFirstResponder());
    for (const auto letter : {Qt::Key_P, Qt::Key_L})
        key(letter);
    const auto found = [&] { return item("resultList") ? item("resultList")->property("count").toInt() : 0; };
    ASSERT_TRUE(becomes([&] { return found() == 2; }));
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_EQ(told->done.back(), "item Plan");
    key(Qt::Key_Escape);
    EXPECT_TRUE(becomes([&] { return item("resultList") == nullptr && view->hasActiveFocus(); }));
    EXPECT_EQ(item("searchField")->property("text").toString(), "");
    EXPECT_FALSE(list->searchFieldIsFirstResponder());
    list->makeSearchFieldFirstResponder();
    EXPECT_TRUE(becomes([&] { return item("searchField")->hasActiveFocus(); }));
    key(Qt::Key_Escape);

    key(Qt::Key_End);
    key(Qt::Key_Return);
    ASSERT_TRUE(becomes([&] { return navigation->topViewController()->title() == "Trips"; }));
    ASSERT_TRUE(becomes([&] { return called("Plan") != nullptr; }));
    key(Qt::Key_Backspace);
    EXPECT_TRUE(becomes([&] { return navigation->topViewController() == list; }));
}

// Arrows mean rows of the grid, and directions where one reads from right to left.
TEST_F(FolderPageTest, ArrowsGoThroughAGridAsItLooks)
{
    platform.services().device.layoutDirection = LayoutDirection::RightToLeft;
    DocumentListController::setListMode(ListMode::Thumbnails);
    openLongList();
    auto* const grid = item("folderGrid");
    ASSERT_NE(grid, nullptr);

    key(Qt::Key_Home);
    EXPECT_GT(middleOf(called("item 10")).x(), middleOf(called("item 11")).x());
    key(Qt::Key_Left);
    key(Qt::Key_Down);
    EXPECT_EQ(grid->property("currentIndex").toInt(), grid->property("columns").toInt() + 1);
    key(Qt::Key_Right);
    key(Qt::Key_Up);
    EXPECT_EQ(grid->property("currentIndex").toInt(), 0);
    DocumentListController::setListMode(ListMode::Rows);
}

TEST_F(FolderPageTest, ASheetPointsAtTheRowThatItIsAbout)
{
    platform.drive.tree("A.txt B.txt C.txt");
    const auto list = openDrive();
    const auto row = [this](const char* name) {
        const auto* const item = called(name);
        return item ? item->mapRectToScene(item->boundingRect()) : QRectF();
    };
    ASSERT_TRUE(becomes([&] { return called("B.txt") != nullptr; }));
    auto* const rows = qvariant_cast<FolderList*>(item("folderList")->property("list"));
    rows->perform(1, static_cast<int>(ListAction::Share));
    const auto sheet = std::make_shared<AlertController>(AlertController::Style::ActionSheet, "B.txt", "");
    sheet->popoverAnchor.sourceView = told->actedOn;
    list->present(sheet, Animated::No);
    const auto anchor = [this] { return layers().back()->property("anchor").toRectF(); };
    EXPECT_TRUE(becomes([&] { return !layers().empty() && anchor() == row("B.txt") && !anchor().isEmpty(); }));

    platform.drive.file("0.txt", "comes before");
    ASSERT_TRUE(becomes([&] { return list->containedItemCount() == 4; }));
    EXPECT_TRUE(becomes([&] {
        platform.services().device.tellScreenChanged();
        return called("0.txt") && anchor() == row("B.txt");
    })) << "wherever it goes";
    std::filesystem::remove(platform.drive.url("B.txt").path());
    EXPECT_TRUE(becomes([&] {
        platform.services().device.tellScreenChanged();
        return anchor().isEmpty();
    }));
}

} // namespace
} // namespace tessel::qt
