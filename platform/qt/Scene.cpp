#include "platform/qt/Scene.h"

#include "platform/base/Platform.h"
#include "platform/qt/DisabledItems.h"
#include "platform/qt/Page.h"
#include "platform/qt/PageStack.h"
#include "platform/qt/Shell.h"
#include "platform/qt/images/IconProvider.h"
#include "platform/qt/images/SymbolProvider.h"
#include "platform/qt/thumbnails/ThumbnailProvider.h"
#include "platform/qt/views/ImageSources.h"
#include "platform/ui/Device.h"

#include <QCoreApplication>
#include <QDebug>
#include <QQmlContext>
#include <QQuickWindow>

#include <algorithm>

void qml_register_types_Tessel();

namespace tessel::qt {

namespace {

/// The window, and what its first page is made of, which is loaded by name.
constexpr const char* kFirstFiles[] = {"Main.qml", "FolderPage.qml", "FolderRows.qml"};

constexpr const char* kThumbnails = "thumbnail";
constexpr int kPreparedRows = 10; // of a first screen

QUrl urlOf(const char* file)
{
    return QUrl(QString("qrc:/qt/qml/Tessel/") + file);
}

void follow(QQuickWindow& window, Shell& shell)
{
    const auto tellSize = [&shell, &window] { shell.setSize(window.width(), window.height()); };
    QObject::connect(&window, &QWindow::widthChanged, &shell, tellSize);
    QObject::connect(&window, &QWindow::heightChanged, &shell, tellSize);
    QObject::connect(&window, &QWindow::screenChanged, &shell,
                     [&window] { platform::installed().device.screenScale = window.devicePixelRatio(); });
    QObject::connect(&window, &QQuickWindow::afterAnimating, &shell, &Shell::syncAnchors);
    shell.setScene(window.contentItem());
    tellSize();
}

} // namespace

Scene::Scene()
    : thumbnails_(new ThumbnailProvider({ThumbnailCache::desktopFolder(), "tesseldrive-" TESSELDRIVE_VERSION}))
{
    qml_register_types_Tessel(); // also has the linker take it
    addImages();
    tellDisabledItems();
    engine_.addImportPath("qrc:/qt/qml");
    QObject::connect(&engine_, &QQmlEngine::quit, QCoreApplication::instance(), &QCoreApplication::quit,
                     Qt::QueuedConnection);
    for (const auto* file : kFirstFiles)
        ahead_.push_back(std::make_unique<QQmlComponent>(&engine_, urlOf(file), QQmlComponent::Asynchronous));
}

Scene::~Scene() = default;

// The first row last: what was asked for last is looked for first.
void Scene::prepare(const Shell& shell)
{
    const auto* const page = static_cast<const Page*>(shell.pages()->top());
    const auto* const list = page ? page->list() : nullptr;
    const auto scheme = QString("image://%1/").arg(kThumbnails);
    for (int row = list ? std::min(list->count(), kPreparedRows) - 1 : -1; row >= 0; --row)
        if (const auto source = list->row(row).thumbnailSource; !source.isEmpty())
            thumbnails_->prepare(source.sliced(scheme.size()));
}

void Scene::load()
{
    for (const auto* file : kFirstFiles)
        const QQmlComponent waits(&engine_, urlOf(file)); // for what the one before has begun
}

void Scene::open(Shell& shell)
{
    load();
    QQmlComponent component(&engine_, urlOf(kFirstFiles[0]));
    engine_.rootContext()->setContextProperty("shell", &shell);
    const auto bounds = platform::installed().device.screenBounds();
    auto* const root = component.isReady() ? component.createWithInitialProperties(
                                                 {{"width", qRound(bounds.width)}, {"height", qRound(bounds.height)}})
                                           : nullptr;
    for (const auto& error : component.errors())
        qWarning().noquote() << error.toString();
    window_.reset(qobject_cast<QQuickWindow*>(root));
    if (window_)
        follow(*window_, shell);
}

void Scene::addImages()
{
    engine_.addImageProvider("icon", new IconProvider);
    engine_.addImageProvider("symbol", new SymbolProvider);
    engine_.addImageProvider(kThumbnails, thumbnails_);
    engine_.addImageProvider(DrawnImageProvider::kName, new DrawnImageProvider);
}

} // namespace tessel::qt
