#include "platform/qt/WindowShell.h"

#include "platform/base/Platform.h"
#include "platform/qt/EventLoop.h"
#include "platform/qt/Shell.h"
#include "platform/ui/Application.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQuickWindow>
#include <QSGRendererInterface>

void qml_register_types_Tessel();

namespace tessel {

struct WindowShell::Parts {
    explicit Parts()
        : application(argumentCount, arguments), loop(platform::installed().mainQueue, platform::installed().clock)
    {
    }

    int argumentCount = 1;
    char name[12] = "tesseldrive";
    char* arguments[2] = {name, nullptr};
    QGuiApplication application;
    qt::EventLoop loop;
};

std::optional<std::string> WindowShell::whyNoWindow()
{
    return std::nullopt;
}

WindowShell::WindowShell(int /*endDescriptor*/)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    parts_ = std::make_unique<Parts>();
}

WindowShell::~WindowShell() = default;

void WindowShell::run(Application& application)
{
    qml_register_types_Tessel();
    qt::Shell shell;
    {
        QQmlApplicationEngine engine;
        engine.addImportPath("qrc:/qt/qml");
        engine.rootContext()->setContextProperty("shell", &shell);
        engine.load(QUrl("qrc:/qt/qml/Tessel/Main.qml"));
        QGuiApplication::exec();
    }
    application.resignActive();
}

} // namespace tessel
