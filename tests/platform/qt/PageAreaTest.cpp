#include "platform/ui/AlertController.h"
#include "tests/platform/qt/SceneFixture.h"

#include <gmock/gmock.h>

namespace tessel::qt {
namespace {

using testing::IsEmpty;

class PageAreaTest : public SceneFixture {
protected:
    /// Two folders deep, at rest.
    void openTrips()
    {
        platform.drive.tree("Trips/ Trips/Plan Trips/Summer/");
        openDrive();
        tap(called("Trips"));
        ASSERT_TRUE(becomes([&] { return called("Summer") != nullptr && isAtRest(); }));
        scene->window()->grabWindow(); // everything has its place
        told->done.clear();
    }
    [[nodiscard]] bool isAtRest() const { return pages().back()->phase() == Presence::Shown; }
    [[nodiscard]] std::string focused() const
    {
        const auto* const item = scene->window()->activeFocusItem();
        const auto name = item ? item->property("name").toString() : "";
        return (item && name.isEmpty() ? item->objectName() : name).toStdString();
    }
    std::shared_ptr<AlertController> ask()
    {
        auto alert = std::make_shared<AlertController>(AlertController::Style::Alert, "New Folder", "Its name?");
        alert->addTextField([this](TextField& made) { made.delegate = refusesDots; });
        alert->addAction(std::make_shared<AlertAction>("Cancel", AlertAction::Style::Cancel, AlertAction::Handler()));
        alert->addAction(std::make_shared<AlertAction>("Make", AlertAction::Style::Default,
                                                       [this](const auto&) { told->done.emplace_back("made"); }));
        navigation->present(alert, Animated::Yes);
        EXPECT_TRUE(becomes([&] { return item("textField") && layers()[0]->phase() == Presence::Shown; }));
        return alert;
    }

    class RefusesDots final : public TextFieldDelegate {
        bool textFieldShouldChangeCharacters(TextField&, std::size_t, std::size_t, const std::string& typed) override
        {
            return typed.find('.') == std::string::npos;
        }
    };
    std::shared_ptr<RefusesDots> refusesDots = std::make_shared<RefusesDots>();
};

TEST_F(PageAreaTest, APageThatIsDraggedFromTheEdgeGoesOnlyWhenItIsLetGoFarEnough)
{
    openTrips();
    drag({{5, 300}, {250, 300}, {60, 300}});
    EXPECT_TRUE(becomes([&] { return item("page")->x() == 0; }));
    EXPECT_EQ(navigation->viewControllers().size(), 2U);

    drag({{5, 300}, {250, 300}});
    EXPECT_EQ(navigation->viewControllers().size(), 1U);
    EXPECT_TRUE(becomes([&] { return pages().size() == 1 && isAtRest(); }));
    EXPECT_TRUE(item("folderList")->hasActiveFocus());
    EXPECT_THAT(told->done, IsEmpty());
}

TEST_F(PageAreaTest, GoesTheOtherWayWhereOneReadsFromRightToLeft)
{
    platform.services().device.layoutDirection = LayoutDirection::RightToLeft;
    openTrips();
    EXPECT_GT(middleOf(item("backButton")).x(), 300);
    const auto row = middleOf(called("Summer")).y();
    drag({{100, row}, {250, row}});
    ASSERT_TRUE(becomes([&] { return called("Delete") && middleOf(called("Delete")).x() > 0; }));
    EXPECT_LT(middleOf(called("Delete")).x(), 40);
    drag({{5, 300}, {250, 300}});
    EXPECT_EQ(navigation->viewControllers().size(), 2U);
    drag({{395, 300}, {150, 300}});
    EXPECT_EQ(navigation->viewControllers().size(), 1U);
}

TEST_F(PageAreaTest, TabGoesThroughAllControlsInReadingOrderAndRound)
{
    openTrips();
    const auto top = navigation->topViewController();
    top->navigationItem.setRightItems({BarButtonItem::titled("Edit", [] {})});
    top->setToolbarItems({BarButtonItem::titled("First", [] {}), BarButtonItem::titled("Off", [] {}),
                          BarButtonItem::titled("Last", [] {})});
    top->toolbarItems()[1]->setEnabled(false);
    navigation->setToolbarHidden(false);
    ASSERT_TRUE(becomes([&] { return called("Last") != nullptr; }));
    item("backButton")->forceActiveFocus();
    const std::vector<std::string> order{"Show as Thumbnails",  "Edit", "searchField", "Cancel", "row", "First", "Last",
                                         "Back to Tessel Drive"};
    for (const auto& next : order) {
        key(Qt::Key_Tab);
        EXPECT_EQ(focused(), next);
    }
    key(Qt::Key_Backtab);
    EXPECT_EQ(focused(), "Last");
}

TEST_F(PageAreaTest, AnAlertHasTheKeyboardAndAllTouchesToItself)
{
    openTrips();
    const auto alert = ask();
    EXPECT_EQ(focused(), "textField");
    for (int step = 0; step < 5; ++step) {
        key(Qt::Key_Tab);
        EXPECT_THAT(focused(), testing::AnyOf("Cancel", "Make", "textField", "Clear"));
    }
    key(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(navigation->viewControllers().size(), 2U);
    tap({200, 110}); // where the first row lies
    EXPECT_EQ(navigation->presentedViewController(), nullptr);
    EXPECT_TRUE(becomes([&] { return layers().empty(); }));
    EXPECT_THAT(told->done, IsEmpty());
    EXPECT_TRUE(item("folderList")->hasActiveFocus());

    ask();
    key(Qt::Key_Escape);
    EXPECT_EQ(navigation->presentedViewController(), nullptr);
}

TEST_F(PageAreaTest, AFieldShowsWhatTheProgramMadeOfWhatWasTyped)
{
    openTrips();
    const auto alert = ask();
    const auto field = alert->textFields()[0];
    const auto shownText = [&] { return item("textField")->property("text").toString().toStdString(); };
    QTest::keyClick(scene->window(), 'a');
    QTest::keyClick(scene->window(), '.');
    QTest::keyClick(scene->window(), 'b');
    EXPECT_EQ(field->text(), "ab");
    EXPECT_EQ(shownText(), "ab");

    field->setText("Untitled folder");
    field->setSelection({0, 8});
    ASSERT_TRUE(becomes([&] { return shownText() == "Untitled folder"; }));
    QTest::keyClick(scene->window(), 'M');
    EXPECT_EQ(field->text(), "M folder");
    field->resignFirstResponder();
    EXPECT_TRUE(becomes([&] { return !item("textField")->hasActiveFocus(); }));
}

// A battery is emptied by what nobody sees.
TEST_F(PageAreaTest, NothingRunsWhileNothingHappens)
{
    openTrips();
    const std::function<int(const QObject&)> running = [&](const QObject& object) {
        int found = object.property("running").toBool() ? 1 : 0;
        for (const auto* const child : object.children())
            found += running(*child);
        if (const auto* const asItem = qobject_cast<const QQuickItem*>(&object))
            for (const auto* const child : asItem->childItems())
                found += child->QObject::parent() == asItem ? 0 : running(*child);
        return found;
    };
    EXPECT_TRUE(becomes([&] { return running(*scene->window()->contentItem()) == 0; }));
    ask();
    EXPECT_TRUE(becomes([&] { return running(*scene->window()->contentItem()) == 0; }));
}

} // namespace
} // namespace tessel::qt
