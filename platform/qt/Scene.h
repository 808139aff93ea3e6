#pragma once

#include <QQmlComponent>
#include <QQmlEngine>

#include <memory>
#include <vector>

class QQuickWindow;

namespace tessel::qt {

class Shell;
class ThumbnailProvider;

/// All that QML makes of the program.
class Scene {
public:
    /// Begins to load what the window is made of, on a thread of QML's own.
    Scene();
    ~Scene();
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    /// Begins to look for the thumbnails of the first rows that the shell's uppermost page will show.
    void prepare(const Shell& shell);
    /// Waits for what is being loaded.
    void load();
    /// Opens the window, in the size of the device's screen. @param shell outlives the scene
    void open(Shell& shell);

    /// Null until it is opened, and when QML could not be loaded, which is told on standard error.
    [[nodiscard]] QQuickWindow* window() const { return window_.get(); }

private:
    void addImages();

    QQmlEngine engine_;
    ThumbnailProvider* const thumbnails_;               ///< the engine's
    std::vector<std::unique_ptr<QQmlComponent>> ahead_; ///< keep what has been loaded
    std::unique_ptr<QQuickWindow> window_;
};

} // namespace tessel::qt
