#pragma once

#include <QWindow>

namespace tessel {
class Application;
} // namespace tessel

namespace tessel::qt {

class Shell;

/// Tells the application that it is on screen again, or not any more: while its window is minimised or hidden, or its
/// compositor suspends it. The mere loss of the keyboard to another window is none of these.
class ApplicationLife final : public QObject {
    Q_OBJECT

public:
    /// For an application that was launched. The arguments outlive this.
    ApplicationLife(Application&, Shell&, QWindow&);

private:
    void visibilityChanged(QWindow::Visibility);
    void stateChanged(Qt::ApplicationState);

    Application& application_;
    Shell& shell_;
    bool isOnScreen_ = true;
    bool hasLostFocus_ = false;
};

} // namespace tessel::qt
