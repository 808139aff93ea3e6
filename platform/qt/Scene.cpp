#include "platform/qt/Scene.h"

#include "platform/base/Platform.h"
#include "platform/qt/DisabledItems.h"
#include "platform/qt/Shell.h"
#include "platform/qt/images/IconProvider.h"
#include "platform/qt/images/SymbolProvider.h"
#include "platform/qt/thumbnails/ThumbnailProvider.h"
#include "platform/qt/views/ImageSources.h"
#include "platform/ui/Device.h"

#include <QQmlContext>
#include <QQuickWindow>

void qml_register_types_Tessel();

namespace tessel::qt {

Scene::Scene(Shell& shell) : shell_(shell)
{
    qml_register_types_Tessel(); // also has the linker take it
    addImages();
    tellDisabledItems();
    const auto bounds = platform::installed().device.screenBounds();
    engine_.setInitialProperties({{"width", qRound(bounds.width)}, {"height", qRound(bounds.height)}});
    engine_.addImportPath("qrc:/qt/qml");
    engine_.rootContext()->setContextProperty("shell", &shell);
    engine_.load(QUrl("qrc:/qt/qml/Tessel/Main.qml"));
    if (auto* const window = this->window())
        follow(*window);
}

Scene::~Scene()
{
    shell_.setScene(nullptr);
}

QQuickWindow* Scene::window() const
{
    const auto roots = engine_.rootObjects();
    return roots.isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(roots.front());
}

void Scene::addImages()
{
    engine_.addImageProvider("icon", new IconProvider);
    engine_.addImageProvider("symbol", new SymbolProvider);
    engine_.addImageProvider(
        "thumbnail", new ThumbnailProvider({ThumbnailCache::desktopFolder(), "tesseldrive-" TESSELDRIVE_VERSION}));
    engine_.addImageProvider(DrawnImageProvider::kName, new DrawnImageProvider);
}

void Scene::follow(QQuickWindow& window)
{
    const auto tellSize = [this, &window] { shell_.setSize(window.width(), window.height()); };
    QObject::connect(&window, &QWindow::widthChanged, &shell_, tellSize);
    QObject::connect(&window, &QWindow::heightChanged, &shell_, tellSize);
    QObject::connect(&window, &QWindow::screenChanged, &shell_,
                     [&window] { platform::installed().device.screenScale = window.devicePixelRatio(); });
    QObject::connect(&window, &QQuickWindow::afterAnimating, &shell_, &Shell::syncAnchors);
    shell_.setScene(window.contentItem());
    tellSize();
}

} // namespace tessel::qt
