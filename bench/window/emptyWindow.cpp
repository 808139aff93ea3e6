// An empty window of the toolkit: what every start is compared with. Ends after its first frame; the meter tells when
// that was.
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

int main(int argc, char* argv[])
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication application(argc, argv);
    QQmlApplicationEngine engine;
    engine.loadData("import QtQuick\nWindow { width: 375; height: 667; visible: true }");
    return QGuiApplication::exec();
}
