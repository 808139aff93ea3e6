#pragma once

#include "platform/documents/DocumentListController.h"
#include "platform/qt/EventLoop.h"
#include "platform/qt/Scene.h"
#include "tests/platform/qt/ShellFixture.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

namespace tessel::qt {

/// The real window over real controllers, touched and typed at.
class SceneFixture : public ShellFixture {
protected:
    /// What a list's delegate is told: "list Trips", "item Plan.txt", "3 Plan.txt" for an action.
    class Told final : public DocumentListControllerDelegate {
    public:
        void documentListControllerDidSelectContainerWithViewController(
            DocumentListController& list, const std::shared_ptr<DocumentListController>& next) override
        {
            done.push_back("list " + next->title());
            next->delegate = list.delegate;
            next->offeredActions = list.offeredActions;
            list.navigationController()->pushViewController(next, Animated::Yes);
        }
        void documentListControllerDidSelectItemAtURL(DocumentListController&, const URL& url) override
        {
            done.push_back("item " + std::string(url.lastPathComponent()));
        }
        void documentListControllerSelectAllItems(DocumentListController& list) override { list.selectAllRows(); }
        void documentListControllerItemsChanged(DocumentListController&) override {}
        void documentListControllerPerformAction(DocumentListController&, int action, const URL& url,
                                                 const std::shared_ptr<View>& row,
                                                 const std::function<void()>&) override
        {
            actedOn = row;
            done.push_back(std::to_string(action) + " " + std::string(url.lastPathComponent()));
        }
        bool documentListControllerCanPerformAction(const DocumentListController&, ListAction) const override
        {
            return true;
        }
        bool documentListControllerCanMoveItems(const DocumentListController&, const std::vector<URL>&,
                                                const URL& folder) const override
        {
            return folder.lastPathComponent() != "Closed";
        }
        void documentListControllerMoveItems(DocumentListController&, const std::vector<URL>& items,
                                             const URL& folder) override
        {
            for (const auto& item : items)
                done.push_back("moved " + item.path() + " to " + std::string(folder.lastPathComponent()));
        }
        std::shared_ptr<ViewController> documentListControllerViewControllerForPreviewingItemAtURL(
            DocumentListController&, const URL& url) override
        {
            return DocumentListController::create(url);
        }
        void documentListControllerURLWasRemoved(DocumentListController&) override {}

        std::vector<std::string> done;
        std::weak_ptr<View> actedOn; ///< stands for the row of the last action
    };

    /// The drive's top folder, on screen.
    std::shared_ptr<DocumentListController> openDrive()
    {
        auto list = DocumentListController::create();
        list->delegate = told;
        list->offeredActions = 0x7D;
        push(list, Animated::No);
        scene.emplace().open(shell);
        EXPECT_TRUE(QTest::qWaitForWindowExposed(scene->window()));
        EXPECT_TRUE(becomes([&] { return list->containedItemCount() == 0 || !items("row").empty(); }));
        scene->window()->grabWindow(); // everything has its place
        return list;
    }

    [[nodiscard]] std::vector<QQuickItem*> items(const QString& name) const
    {
        std::vector<QQuickItem*> found;
        gather(*scene->window()->contentItem(), [&](QQuickItem* item) {
            if (item->objectName() == name)
                found.push_back(item);
        });
        return found;
    }
    [[nodiscard]] QQuickItem* item(const QString& name) const
    {
        const auto found = items(name);
        return found.empty() ? nullptr : found.back();
    }
    /// The row, or the button, that is called so.
    [[nodiscard]] QQuickItem* called(const QString& title) const
    {
        QQuickItem* found = nullptr;
        gather(*scene->window()->contentItem(), [&](QQuickItem* item) {
            if (item->property("identity") == title || item->property("name") == title)
                found = item;
        });
        return found;
    }

    [[nodiscard]] static QPoint middleOf(const QQuickItem* item)
    {
        return item->mapToScene({item->width() / 2, item->height() / 2}).toPoint();
    }
    void tap(QPoint point) const { drag({point}); }
    void tap(const QQuickItem* item) const { tap(middleOf(item)); }
    /// A finger that goes from point to point.
    void drag(const std::vector<QPoint>& path, bool isReleased = true) const
    {
        auto* const window = scene->window();
        QTest::touchEvent(window, finger()).press(0, path.front(), window);
        for (std::size_t leg = 1; leg < path.size(); ++leg)
            for (int step = 1; step <= 10; ++step)
                QTest::touchEvent(window, finger())
                    .move(0, path[leg - 1] + (path[leg] - path[leg - 1]) * step / 10, window);
        if (isReleased)
            lift(path.back());
    }
    void lift(QPoint point) const { QTest::touchEvent(scene->window(), finger()).release(0, point, scene->window()); }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::keyClick(scene->window(), key, modifiers);
    }

    bool becomes(const std::function<bool()>& condition)
    {
        return QTest::qWaitFor(
            [&] {
                platform.turn(0.05);
                return condition();
            },
            20'000);
    }

    std::shared_ptr<Told> told = std::make_shared<Told>();
    EventLoop loop{platform.services().mainQueue, platform.services().clock};
    std::optional<Scene> scene;

private:
    static QPointingDevice* finger()
    {
        // Moves are told at once, not with the next frame.
        static auto* const device = qputenv("QML_NO_TOUCH_COMPRESSION", "1") ? QTest::createTouchDevice() : nullptr;
        return device;
    }
    /// What can be seen, the uppermost last.
    static void gather(QQuickItem& item, const std::function<void(QQuickItem*)>& take)
    {
        if (!item.isVisible())
            return;
        take(&item);
        for (auto* const child : item.childItems())
            gather(*child, take);
    }
};

} // namespace tessel::qt
