#include "platform/documents/DocumentListController.h"
#include "platform/qt/BarItem.h"
#include "tests/platform/qt/ShellFixture.h"

#include <QAbstractItemModelTester>
#include <QPointer>
#include <QSignalSpy>

#include <random>

namespace tessel::qt {
namespace {

class PageStackTest : public ShellFixture {
protected:
    QAbstractItemModelTester tester{shell.pages(), QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(PageStackTest, APageEntersAndLeavesUntilItsMotionWasSeen)
{
    push(plain("Root"));
    EXPECT_EQ(shown(), "Root"); // the first one is there from the beginning
    const auto folder = plain("Folder");
    push(folder);
    EXPECT_EQ(shown(), "Root!, Folder+");
    EXPECT_TRUE(pages()[1]->isAnimated());
    pages()[1]->finished();
    EXPECT_EQ(shown(), "Root!, Folder");

    navigation->popViewController(Animated::Yes);
    settle();
    EXPECT_EQ(shown(), "Root, Folder-");
    const QPointer leaving = pages()[1];
    leaving->finished();
    leaving->finished(); // QML may tell twice
    EXPECT_EQ(shown(), "Root");
    settle();
    EXPECT_EQ(leaving, nullptr);
    EXPECT_EQ(folder.use_count(), 1);
}

TEST_F(PageStackTest, OnlyTheLastOfSeveralChangesMoves)
{
    push(plain("Root"), Animated::No);
    push(plain("Folder"));
    push(plain("File"));
    EXPECT_EQ(shown(), "Root!, Folder!, File+");
    navigation->popViewController(Animated::Yes);
    settle();
    EXPECT_EQ(shown(), "Root!, Folder, File-");
    push(plain("Other"));
    EXPECT_EQ(shown(), "Root!, Folder!, Other+");
    navigation->popToRootViewController(Animated::Yes);
    settle();
    EXPECT_EQ(shown(), "Root, Other-");
    push(plain("At once"), Animated::No);
    EXPECT_EQ(shown(), "Root!, At once");
}

TEST_F(PageStackTest, ReplacesTheWholeStackWhileAPageMoves)
{
    push(plain("Root"));
    const auto kept = plain("Kept");
    push(kept);
    const QPointer keptPage = pages()[1];
    push(plain("Moving"));

    navigation->setViewControllers({plain("New root"), kept, plain("New top")}, Animated::Yes);
    settle();
    EXPECT_EQ(shown(), "New root!, Kept!, New top+");
    EXPECT_EQ(pages()[1], keptPage);

    navigation->setViewControllers({kept}, Animated::Yes);
    settle();
    EXPECT_EQ(shown(), "Kept, New top-");
    EXPECT_EQ(pages()[0], keptPage);
}

// A list tells one listener of its rows: were there two pages of one list for a while, the rows would stand still.
TEST_F(PageStackTest, ALeavingPageIsTakenBackWhenItsControllerReturns)
{
    push(plain("Root"));
    platform.drive.file("a.txt");
    const auto list = DocumentListController::create();
    push(list, Animated::No);
    navigation->popViewController(Animated::Yes);
    settle();
    const QPointer leaving = pages()[1];
    push(list);
    EXPECT_EQ(pages()[1], leaving);
    EXPECT_EQ(leaving->phase(), Presence::Entering);
    leaving->list()->setVisibleRange(0, 10);
    platform.drive.file("b.txt");
    EXPECT_TRUE(platform.runUntil([&] {
        platform.clock.advance(1);
        return leaving->list()->count() == 2;
    }));
}

TEST_F(PageStackTest, IsTheModelsStackAfterEveryStormOfChanges)
{
    std::mt19937 random(1); // the same storm each time
    const auto chance = [&random](unsigned one, unsigned of) { return random() % of < one; };
    NavigationController::Stack known{plain("Root")};
    navigation->setViewControllers(known, Animated::No);
    for (int step = 0; step < 500; ++step) {
        const auto animated = chance(2, 3) ? Animated::Yes : Animated::No;
        if (chance(1, 2)) {
            known.push_back(plain(std::to_string(step)));
            navigation->pushViewController(known.back(), animated);
        } else if (chance(3, 4)) {
            navigation->popViewController(animated);
        } else {
            std::ranges::shuffle(known, random);
            known.resize(1 + random() % known.size());
            navigation->setViewControllers(known, animated);
        }
        if (chance(1, 3))
            continue; // the next change comes in the same turn
        settle();
        ASSERT_EQ(shell.pages()->controllers(), navigation->viewControllers());
        ASSERT_EQ(shell.pages()->top()->controller(), navigation->topViewController());
        for (auto* const page : pages())
            if (chance(1, 2))
                page->finished();
        ASSERT_EQ(shell.pages()->controllers(), navigation->viewControllers());
    }
    settle();
    for (auto* const page : pages())
        page->finished();
    EXPECT_EQ(pages().size(), navigation->viewControllers().size());
    EXPECT_EQ(pages().back()->phase(), Presence::Shown);
    settle();
    EXPECT_EQ(shell.pages()->findChildren<Page*>().size(), static_cast<qsizetype>(pages().size())); // none is kept
}

TEST_F(PageStackTest, TellsOfBarsOnlyWhatHasChanged)
{
    const auto root = plain("Root");
    const auto top = plain("Top");
    const auto shared = BarButtonItem::titled("Shared", [] {});
    root->setToolbarItems({shared});
    top->setToolbarItems({shared, BarButtonItem::titled("Own", [] {})});
    navigation->setToolbarHidden(false);
    navigation->setViewControllers({root, top}, Animated::No);
    settle();
    auto* const page = pages()[1];
    const auto items = page->property("toolbarItems").toList();
    EXPECT_EQ(items.front(), pages()[0]->property("toolbarItems").toList().front());
    QSignalSpy toolbar(page, &Page::toolbarItemsChanged);
    QSignalSpy title(page, &Page::titleChanged);
    QSignalSpy back(page, &Page::backChanged);
    QSignalSpy item(items.front().value<BarItem*>(), &BarItem::changed);

    shell.sync();
    EXPECT_EQ(toolbar.size() + title.size() + back.size() + item.size(), 0);
    shared->setEnabled(false);
    root->setTitle("Renamed");
    settle();
    EXPECT_EQ(item.size(), 1);
    EXPECT_EQ(back.size(), 1);
    EXPECT_EQ(page->property("backTitle").toString(), "Renamed");
    EXPECT_EQ(toolbar.size() + title.size(), 0);
}

TEST_F(PageStackTest, AnEntryMayRemoveItselfWhileItIsPressed)
{
    const auto top = plain("Top");
    top->navigationItem.setRightItems({BarButtonItem::titled("Edit", [&] { top->navigationItem.setRightItems({}); })});
    push(top);
    const QPointer item = pages()[0]->property("rightItems").toList().front().value<BarItem*>();
    item->press();
    ASSERT_NE(item, nullptr); // QML may be inside its handler
    item->press();
    settle();
    EXPECT_EQ(item, nullptr);
    EXPECT_TRUE(pages()[0]->property("rightItems").toList().isEmpty());
}

} // namespace
} // namespace tessel::qt
