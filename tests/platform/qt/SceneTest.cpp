#include "platform/qt/Scene.h"
#include "platform/documents/DocumentListController.h"
#include "platform/qt/EventLoop.h"
#include "platform/ui/Button.h"
#include "tests/platform/qt/ShellFixture.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <random>

namespace tessel::qt {
namespace {

/// What QML and Qt complain of while it lives.
class Complaints {
public:
    Complaints() { qInstallMessageHandler(hear); }
    ~Complaints()
    {
        qInstallMessageHandler(nullptr);
        heard.clear();
    }

    static inline QStringList heard;

private:
    static void hear(QtMsgType type, const QMessageLogContext&, const QString& text)
    {
        if (type != QtDebugMsg && type != QtInfoMsg)
            heard.append(text);
    }
};

/// The real window over real controllers, without a display.
class SceneTest : public ShellFixture {
protected:
    SceneTest()
    {
        scene->open(shell);
        EXPECT_TRUE(QTest::qWaitForWindowExposed(scene->window()));
    }
    ~SceneTest() override { EXPECT_TRUE(Complaints::heard.isEmpty()) << Complaints::heard.join('\n').toStdString(); }

    [[nodiscard]] QQuickItem* item(const QString& name) const
    {
        return itemBelow(scene->window()->contentItem(), name);
    }
    [[nodiscard]] static QQuickItem* itemBelow(QQuickItem* item, const QString& name)
    {
        if (item->objectName() == name || !item->isVisible())
            return item->isVisible() ? item : nullptr;
        for (auto* const child : item->childItems())
            if (auto* const found = itemBelow(child, name))
                return found;
        return nullptr;
    }
    void click(QQuickItem* item) const
    {
        const auto middle = item->mapToScene({item->width() / 2, item->height() / 2}).toPoint();
        QTest::mouseClick(scene->window(), Qt::LeftButton, {}, middle);
    }
    [[nodiscard]] static bool becomes(const std::function<bool()>& condition)
    {
        return QTest::qWaitFor(condition, 20'000);
    }
    [[nodiscard]] bool isAtRest() const
    {
        return std::ranges::all_of(pages(), [this](const Page* page) {
            return page->phase() == (page == shell.pages()->top() ? Presence::Shown : Presence::Covered);
        });
    }

    const Complaints complaints;
    EventLoop loop{platform.services().mainQueue, platform.services().clock};
    std::optional<Scene> scene{std::in_place};
};

TEST_F(SceneTest, APressedRowSlidesItsFolderInAndTheBackButtonOut)
{
    platform.drive.file("Trips/Plan.txt");
    push(DocumentListController::create());
    const auto root = std::static_pointer_cast<DocumentListController>(navigation->topViewController());
    class Pusher final : public DocumentListControllerDelegate {
        void documentListControllerDidSelectContainerWithViewController(
            DocumentListController& list, const std::shared_ptr<DocumentListController>& next) override
        {
            list.navigationController()->pushViewController(next, Animated::Yes);
        }
        void documentListControllerDidSelectItemAtURL(DocumentListController&, const URL&) override {}
        void documentListControllerItemsChanged(DocumentListController&) override {}
        void documentListControllerURLWasRemoved(DocumentListController&) override {}
    };
    const auto pusher = std::make_shared<Pusher>();
    root->delegate = pusher;
    ASSERT_TRUE(becomes([&] { return item("row") != nullptr; }));
    scene->window()->grabWindow(); // it has its place
    click(item("row"));
    ASSERT_TRUE(becomes([&] { return navigation->viewControllers().size() == 2; }));
    EXPECT_TRUE(becomes([&] { return isAtRest(); }));

    ASSERT_TRUE(becomes([&] { return item("backButton") != nullptr; }));
    click(item("backButton"));
    EXPECT_TRUE(
        becomes([&] { return navigation->viewControllers().size() == 1 && isAtRest() && pages().size() == 1; }));
}

TEST_F(SceneTest, EndsWithTheModelsPagesAfterAStormOfChangesInTheMiddleOfMotions)
{
    std::mt19937 random(2);
    navigation->setViewControllers({plain("Root")}, Animated::No);
    for (int step = 0; step < 60; ++step) {
        if (random() % 2 == 0)
            navigation->pushViewController(plain(std::to_string(step)), Animated::Yes);
        else
            navigation->popViewController(Animated::Yes);
        if (random() % 8 == 0)
            navigation->setViewControllers({plain("New"), navigation->topViewController()}, Animated::Yes);
        QCoreApplication::processEvents();
    }
    EXPECT_TRUE(becomes([&] { return isAtRest(); }));
    EXPECT_EQ(shell.pages()->controllers(), navigation->viewControllers());
    ASSERT_NE(item("page"), nullptr);
    EXPECT_EQ(item("page")->x(), 0);
}

TEST_F(SceneTest, APopoverPointsAtTheEntryOrViewThatIsOnScreen)
{
    const auto top = plain("Top");
    const auto button = std::make_shared<Button>("Here");
    const auto entry = BarButtonItem::titled("Edit", [] {});
    button->setFrame({100, 50, 80, 40});
    top->view().addSubview(button);
    top->navigationItem.setRightItems({entry});
    push(top);
    const auto present = [&](const std::shared_ptr<ViewController>& popover) {
        popover->presentationStyle = PresentationStyle::Popover;
        top->present(popover, Animated::No);
        settle();
    };
    const auto anchor = [this] { return layers().back()->property("anchor").toRectF(); };
    const auto atView = plain("At a view");
    atView->popoverAnchor.sourceView = button;
    atView->popoverAnchor.sourceRect = {10, 0, 20, 40};
    present(atView);
    const QRectF part(110, NavigationController::navigationBarHeight() + 50, 20, 40);
    EXPECT_TRUE(becomes([&] { return anchor() == part; }));

    const auto atEntry = plain("At an entry");
    atEntry->popoverAnchor.barButtonItem = entry;
    present(atEntry);
    const QRectF end(300, 0, 100, NavigationController::navigationBarHeight());
    EXPECT_TRUE(becomes([&] { return end.contains(anchor()); }));
    scene->window()->resize(700, 600);
    EXPECT_TRUE(becomes([&] { return end.translated(300, 0).contains(anchor()); }));
    present(plain("Nowhere"));
    EXPECT_TRUE(anchor().isEmpty());
}

} // namespace
} // namespace tessel::qt
