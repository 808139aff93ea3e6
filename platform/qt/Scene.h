#pragma once

#include <QQmlApplicationEngine>

class QQuickWindow;

namespace tessel::qt {

class Shell;

/// The window and all that QML made for it.
class Scene {
public:
    /// Opens the window, in the size of the device's screen. @param shell outlives the scene
    explicit Scene(Shell& shell);
    ~Scene();
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    /// Null when QML could not be loaded, which it has told on standard error.
    [[nodiscard]] QQuickWindow* window() const;

private:
    void addImages();
    void follow(QQuickWindow&);

    Shell& shell_;
    QQmlApplicationEngine engine_;
};

} // namespace tessel::qt
