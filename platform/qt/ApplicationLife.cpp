#include "platform/qt/ApplicationLife.h"

#include "platform/qt/Shell.h"
#include "platform/ui/Application.h"

#include <QGuiApplication>

namespace tessel::qt {

ApplicationLife::ApplicationLife(Application& application, Shell& shell, QWindow& window)
    : application_(application), shell_(shell)
{
    connect(&window, &QWindow::visibilityChanged, this, &ApplicationLife::visibilityChanged);
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, &ApplicationLife::stateChanged);
}

void ApplicationLife::visibilityChanged(QWindow::Visibility visibility)
{
    const bool isOnScreen = visibility != QWindow::Hidden && visibility != QWindow::Minimized;
    if (std::exchange(isOnScreen_, isOnScreen) == isOnScreen)
        return;
    if (isOnScreen)
        application_.becomeActive();
    else
        application_.resignActive();
}

void ApplicationLife::stateChanged(Qt::ApplicationState state)
{
    shell_.setActive(state == Qt::ApplicationActive);
    if (state == Qt::ApplicationActive) {
        if (std::exchange(hasLostFocus_, false) && isOnScreen_)
            application_.becomeActive();
        return;
    }
    hasLostFocus_ = true;
    if (state == Qt::ApplicationSuspended || state == Qt::ApplicationHidden)
        application_.resignActive();
}

} // namespace tessel::qt
