#include "files/DRItem.h"
#include "platform/qt/EventLoop.h"
#include "platform/qt/OnScreenKeyboard.h"
#include "platform/qt/Scene.h"
#include "platform/ui/AlertController.h"
#include "platform/ui/ScrollView.h"
#include "preview/PreviewDetailsViewController.h"
#include "preview/PreviewItemManager.h"
#include "tests/platform/qt/SceneFixture.h"

namespace tessel::qt {
namespace {

/// A document's details in the real window.
class DetailsPageTest : public SceneFixture {
protected:
    void open(const std::string& name = "Report.txt")
    {
        manager->setItem(DRItem::initWithURL(platform.drive.file(name, "content")), false);
        details->itemManager = manager;
        details->mode = 1;
        push(plain("Documents"), Animated::No);
        push(details, Animated::No);
        scene.emplace().open(shell);
        EXPECT_TRUE(QTest::qWaitForWindowExposed(scene->window()));
        EXPECT_TRUE(becomes([&] { return item("textField") != nullptr; }));
        scene->window()->grabWindow();
    }
    void edit()
    {
        tap(item("textField"));
        ASSERT_TRUE(becomes([&] { return item("textField")->hasActiveFocus() && called("Done") && called("Cancel"); }));
        QTest::qWait(0);
    }
    [[nodiscard]] QString shownName() const { return item("textField")->property("text").toString(); }
    void type(std::string_view text) const
    {
        for (const char letter : text)
            QTest::keyClick(scene->window(), letter);
    }

    std::shared_ptr<PreviewItemManager> manager = std::make_shared<PreviewItemManager>();
    std::shared_ptr<PreviewDetailsViewController> details = std::make_shared<PreviewDetailsViewController>();
};

TEST_F(DetailsPageTest, ATouchBeginsEditingBeforeTheExtension)
{
    open();
    auto& field = *details->filenameTextField;
    edit();
    type("s");
    EXPECT_TRUE(becomes([&] { return shownName() == "Reports.txt"; })) << shownName().toStdString();
    tap(called("Done"));
    EXPECT_TRUE(becomes([&] { return !field.isFirstResponder() && called("Done") == nullptr; }));
    EXPECT_TRUE(platform.drive.read("Reports.txt") == "content");

    manager->setItem(DRItem::initWithURL(platform.drive.url("Reports.txt")), false);
    edit();
    type("x");
    tap(called("Cancel"));
    EXPECT_TRUE(becomes([&] { return shownName() == "Reports.txt"; }));
    EXPECT_FALSE(field.isFirstResponder());
}

TEST_F(DetailsPageTest, EndsEditingByATapBesideEscapeAndReturn)
{
    open();
    auto& field = *details->filenameTextField;
    edit();
    type("1");
    tap(QPoint(200, 100)); // at the thumbnail
    EXPECT_TRUE(becomes([&] { return !field.isFirstResponder(); }));
    EXPECT_EQ(platform.drive.read("Report1.txt"), "content");

    manager->setItem(DRItem::initWithURL(platform.drive.url("Report1.txt")), false);
    edit();
    type("2");
    key(Qt::Key_Escape);
    EXPECT_TRUE(becomes([&] { return !field.isFirstResponder() && shownName() == "Report1.txt"; }));
    EXPECT_EQ(pages().back()->controller(), details) << "it is not left";

    edit();
    type("3");
    key(Qt::Key_Return);
    EXPECT_TRUE(becomes([&] { return !field.isFirstResponder(); }));
    EXPECT_EQ(platform.drive.read("Report13.txt"), "content");
}

TEST_F(DetailsPageTest, GoesOnWithTheNameThatWasRefused)
{
    platform.drive.file("Taken.txt", "another");
    open();
    auto& field = *details->filenameTextField;
    edit();
    key(Qt::Key_A, Qt::ControlModifier);
    type("Taken");
    key(Qt::Key_Return);
    ASSERT_TRUE(becomes([&] { return called("OK") != nullptr; }));
    EXPECT_TRUE(field.isFirstResponder());
    tap(called("OK"));
    EXPECT_TRUE(becomes([&] { return item("textField")->hasActiveFocus(); }));
    EXPECT_EQ(shownName(), "Taken");
    type("2");
    EXPECT_TRUE(becomes([&] { return field.text() == "Taken2"; })) << field.text();
    key(Qt::Key_Return);
    EXPECT_TRUE(becomes([&] { return !field.isFirstResponder(); }));
    EXPECT_EQ(platform.drive.read("Taken2.txt"), "content");
}

TEST_F(DetailsPageTest, MovesTheNameAboveTheKeyboard)
{
    open();
    OnScreenKeyboard keyboard(nullptr);
    const auto bottomOfName = [&] {
        const auto* const field = item("textField");
        return field->mapToScene({0, field->height()}).y();
    };
    const auto before = bottomOfName();
    keyboard.moved({0, 300, 400, 300});
    EXPECT_TRUE(becomes([&] { return bottomOfName() < 300; })) << bottomOfName();
    EXPECT_GT(details->scrollView->contentOffset().y, 0);
    keyboard.moved({});
    EXPECT_TRUE(becomes([&] { return bottomOfName() == before; })) << bottomOfName();
}

TEST_F(DetailsPageTest, IsMirroredWhereOneReadsFromTheRight)
{
    open();
    shell.setSize(1000, 700);
    ASSERT_TRUE(becomes([&] { return item("textField")->mapToScene({0, 0}).x() > 500; }));
    const auto placeOfName = [&] {
        const auto* const field = item("textField");
        return QRectF(field->mapToScene({0, 0}), QSizeF(field->width(), field->height()));
    };
    const auto plain = placeOfName();
    platform.services().device.layoutDirection = LayoutDirection::RightToLeft;
    emit shell.deviceChanged();
    EXPECT_TRUE(becomes([&] { return placeOfName().right() == 1000 - plain.left(); })) << placeOfName().right();
}

} // namespace
} // namespace tessel::qt
