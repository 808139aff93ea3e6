#include "platform/documents/DocumentListController.h"
#include "platform/qt/AlertButton.h"
#include "platform/ui/AlertController.h"
#include "platform/ui/Label.h"
#include "tests/platform/qt/ShellFixture.h"

#include <QGuiApplication>
#include <QPalette>
#include <QPointer>
#include <QSignalSpy>

namespace tessel::qt {
namespace {

using testing::SizeIs;

class ShellTest : public ShellFixture {
protected:
    std::shared_ptr<AlertController> alert(AlertAction::Handler chosen = {})
    {
        auto made = std::make_shared<AlertController>(AlertController::Style::Alert, "Sure?", "Really?");
        made->addAction(std::make_shared<AlertAction>("OK", AlertAction::Style::Default, std::move(chosen)));
        made->addAction(std::make_shared<AlertAction>("Cancel", AlertAction::Style::Cancel, AlertAction::Handler()));
        return made;
    }
    static AlertButton* button(const Layer* layer, int index)
    {
        return layer->property("actions").toList()[index].value<AlertButton*>();
    }
};

TEST_F(ShellTest, AnAlertComesAndGoesWhileAPageMoves)
{
    push(plain("Root"));
    push(plain("Folder"));
    int chosen = 0;
    navigation->topViewController()->present(alert([&](const auto&) {
                                                 ++chosen;
                                                 navigation->popViewController(Animated::Yes);
                                             }),
                                             Animated::Yes);
    settle();
    EXPECT_EQ(shown(), "Root!, Folder+");
    ASSERT_THAT(layers(), SizeIs(1));
    const QPointer layer = layers()[0];
    EXPECT_EQ(layer->phase(), Presence::Entering);
    EXPECT_EQ(layer->kind(), "alert");

    button(layer, 0)->press();
    button(layer, 0)->press(); // a second touch while it goes
    settle();
    EXPECT_EQ(chosen, 1);
    EXPECT_EQ(shown(), "Root, Folder-");
    EXPECT_EQ(layer->phase(), Presence::Leaving);
    EXPECT_FALSE(layer->cancel());
    layer->finished();
    settle();
    EXPECT_EQ(layer, nullptr);
}

TEST_F(ShellTest, AButtonOfAnAlertFollowsItsAction)
{
    push(plain("Root"));
    const auto shownAlert = alert();
    navigation->present(shownAlert, Animated::Yes);
    settle();
    QSignalSpy changed(button(layers()[0], 0), &AlertButton::changed);
    shownAlert->actions()[0]->setEnabled(false);
    settle();
    EXPECT_EQ(changed.size(), 1);
    EXPECT_FALSE(button(layers()[0], 0)->property("enabled").toBool());
    shell.sync();
    EXPECT_EQ(changed.size(), 1);
}

TEST_F(ShellTest, BackCancelsWhatLiesOnTopAndThenGoesBack)
{
    push(plain("Root"));
    push(plain("Folder"));
    navigation->present(alert(), Animated::Yes);
    EXPECT_TRUE(shell.back()); // also before QML has shown the alert
    EXPECT_EQ(navigation->presentedViewController(), nullptr);
    EXPECT_EQ(pages()[1]->phase(), Presence::Entering);
    EXPECT_TRUE(shell.back());
    EXPECT_EQ(pages()[1]->phase(), Presence::Leaving); // without a turn of the loop
    EXPECT_FALSE(shell.back());

    const auto cover = plain("Cover");
    navigation->present(cover, Animated::Yes);
    EXPECT_FALSE(shell.back());
    EXPECT_EQ(navigation->presentedViewController(), cover);
}

TEST_F(ShellTest, ShowsWhatIsPresentedBottomToTopButASearch)
{
    platform.drive.file("a.txt");
    const auto list = DocumentListController::create();
    push(list);
    list->startSearch("a");
    settle();
    EXPECT_THAT(layers(), SizeIs(0));
    EXPECT_TRUE(pages()[0]->list()->searching());
    list->startSearch("");

    const auto inner = plain("Inner");
    const auto stack = std::make_shared<NavigationController>();
    stack->setViewControllers({inner}, Animated::No);
    list->present(stack, Animated::Yes);
    inner->present(alert(), Animated::Yes);
    settle();
    ASSERT_THAT(layers(), SizeIs(2));
    EXPECT_EQ(layers()[0]->kind(), "views");
    EXPECT_EQ(rows<Page>(*layers()[0]->pages())[0]->controller(), inner);
    EXPECT_EQ(layers()[1]->kind(), "alert");

    list->dismiss(Animated::Yes);
    settle();
    ASSERT_THAT(layers(), SizeIs(1)); // only what lay on top is seen to leave
    EXPECT_EQ(layers()[0]->kind(), "alert");
    EXPECT_EQ(layers()[0]->phase(), Presence::Leaving);
}

TEST_F(ShellTest, LaysOutBetweenTheBarsInTheWindowsSize)
{
    const auto top = plain("Top");
    push(top);
    const auto bar = NavigationController::navigationBarHeight();
    EXPECT_EQ(top->view().frame(), (Rect{0, bar, 400, 600 - bar}));
    navigation->setToolbarHidden(false);
    settle();
    EXPECT_EQ(top->view().frame().height, 600 - bar); // a bar without anything in it is none
    top->setToolbarItems({BarButtonItem::flexibleSpace()});
    settle();
    EXPECT_EQ(top->view().frame().height, 600 - bar - NavigationController::toolbarHeight());
    shell.setSize(800, 700);
    settle();
    EXPECT_EQ(top->view().frame().width, 800);
    EXPECT_TRUE(shell.isTablet());
}

TEST_F(ShellTest, AViewWithoutASizeIsAsLargeAsTheToolbar)
{
    /// Has its only subview in its lower half.
    class Halves final : public View {
        void layoutSubviews() override
        {
            subviews().front()->setFrame({0, bounds().height / 2, bounds().width, bounds().height / 2});
        }
    };
    const auto halves = std::make_shared<Halves>();
    halves->addSubview(std::make_shared<View>());
    const auto label = std::make_shared<Label>("Status");
    label->setFrame({0, 0, 50, 20});
    const auto top = plain("Top");
    top->setToolbarItems({BarButtonItem::custom(label), BarButtonItem::custom(halves)});
    navigation->setToolbarHidden(false);
    push(top);
    EXPECT_EQ(halves->frame(), (Rect{0, 0, 384, 44}));
    EXPECT_EQ(halves->subviews().front()->frame(), (Rect{0, 22, 384, 22}));
    EXPECT_EQ(label->frame(), (Rect{0, 0, 50, 20}));
    shell.setSize(800, 700);
    settle();
    EXPECT_EQ(halves->frame().width, 800 - 2 * shell.toolbarMargin());
}

TEST_F(ShellTest, LaysOutAnAlertsOwnAreaInTheRoomThatQmlGivesIt)
{
    push(plain("Root"));
    const auto content = plain("Content");
    const auto asked = alert();
    asked->setContentViewController(content);
    navigation->present(asked, Animated::Yes);
    settle();
    layers()[0]->setProperty("contentWidth", 300.0);
    settle();
    EXPECT_EQ(content->view().frame().width, 300);
}

TEST_F(ShellTest, FollowsTheDesktopIntoTheDark)
{
    push(plain("Top"));
    QSignalSpy changed(&shell, &Shell::deviceChanged);
    const auto before = QGuiApplication::palette();
    QGuiApplication::setPalette(QPalette(Qt::white, Qt::black, Qt::white, Qt::black, Qt::gray, Qt::white, Qt::black));
    settle();
    EXPECT_TRUE(shell.isDark());
    QGuiApplication::setPalette(before);
    settle();
    EXPECT_FALSE(shell.isDark());
    EXPECT_GE(changed.size(), 2);
}

} // namespace
} // namespace tessel::qt
