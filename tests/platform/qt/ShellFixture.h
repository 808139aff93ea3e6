#pragma once

#include "platform/qt/Layer.h"
#include "platform/qt/Page.h"
#include "platform/qt/Shell.h"
#include "platform/qt/SystemAppearance.h"
#include "platform/run/MainQueue.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/Window.h"
#include "tests/support/InstalledPlatform.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

namespace tessel::qt {

/// A shell over a stack of plain controllers, in a window of 400 by 600 points.
class ShellFixture : public testing::Test {
protected:
    class Plain : public ViewController {
    public:
        explicit Plain(std::string title) { setTitle(std::move(title)); }
        [[nodiscard]] std::string className() const override { return "Plain"; }
    };

    ShellFixture()
    {
        window->setRootViewController(navigation);
        window->makeKeyAndVisible();
        shell.setSize(400, 600);
    }

    static std::shared_ptr<Plain> plain(std::string title) { return std::make_shared<Plain>(std::move(title)); }

    void push(const std::shared_ptr<ViewController>& controller, Animated animated = Animated::Yes)
    {
        navigation->pushViewController(controller, animated);
        settle();
    }

    /// Runs what is ready on the main queue and in Qt until nothing is, and deletes what is to be deleted later.
    static void settle()
    {
        do {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        } while (DispatchQueue::main().runReady());
    }

    template <typename T>
    static std::vector<T*> rows(const PresenceList& list)
    {
        std::vector<T*> found;
        for (int row = 0; row < list.rowCount(); ++row)
            found.push_back(static_cast<T*>(list.data(list.index(row), Qt::UserRole).value<Presence*>()));
        return found;
    }
    [[nodiscard]] std::vector<Page*> pages() const { return rows<Page>(*shell.pages()); }
    [[nodiscard]] std::vector<Layer*> layers() const { return rows<Layer>(*shell.layers()); }

    /// "Root, Folder!, File-": a page that enters has "+", one that leaves "-", one that is covered "!".
    [[nodiscard]] std::string shown() const
    {
        std::string text;
        for (const auto* page : pages()) {
            const auto mark = std::map<Presence::Phase, std::string>{
                {Presence::Covered, "!"}, {Presence::Entering, "+"}, {Presence::Leaving, "-"}}[page->phase()];
            text += (text.empty() ? "" : ", ") + page->controller()->title() + mark;
        }
        return text;
    }

    InstalledPlatform platform;
    std::shared_ptr<NavigationController> navigation = std::make_shared<NavigationController>();
    std::shared_ptr<Window> window = std::make_shared<Window>(Rect{});
    SystemAppearance appearance;
    Shell shell{appearance};
};

} // namespace tessel::qt
