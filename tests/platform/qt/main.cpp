#include <QGuiApplication>
#include <QQuickWindow>
#include <QSGRendererInterface>

#include <gmock/gmock.h>

// One application object for all tests of the program: Qt knows no second one. No display is needed.
int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleMock(&argc, argv);
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
