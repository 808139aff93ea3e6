#include "platform/qt/WindowShell.h"

#include "platform/base/Platform.h"
#include "platform/qt/ApplicationLife.h"
#include "platform/qt/Display.h"
#include "platform/qt/EventLoop.h"
#include "platform/qt/Scene.h"
#include "platform/qt/Shell.h"
#include "platform/qt/SystemAppearance.h"
#include "platform/qt/WindowSize.h"
#include "platform/qt/views/QtTextMeasurer.h"
#include "platform/ui/Application.h"
#include "platform/ui/Device.h"

#include <QGuiApplication>
#include <QIcon>
#include <QLocale>
#include <QQuickWindow>
#include <QSGRendererInterface>
#include <QScreen>
#include <QSocketNotifier>

#include <array>

namespace tessel {

namespace {

/// Painting by the processor starts quicker, takes less memory, and is the same on every machine.
void chooseRenderer()
{
    if (!qEnvironmentVariableIsSet("QSG_RHI_BACKEND") && !qEnvironmentVariableIsSet("QT_QUICK_BACKEND") &&
        qEnvironmentVariable("TESSELDRIVE_GL") != "1")
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

void nameApplication()
{
    QGuiApplication::setApplicationName("tesseldrive");
    QGuiApplication::setDesktopFileName("orvane.TesselDrive");
    QGuiApplication::setWindowIcon(QIcon(":/tessel/app/orvane.TesselDrive.svg"));
    const auto languages = QLocale::system().uiLanguages();
    QGuiApplication::setLayoutDirection(QLocale(languages.value(0)).textDirection());
}

void describeDevice(Device& device, const qt::SystemAppearance& appearance)
{
    const auto* const screen = QGuiApplication::primaryScreen();
    const auto available = screen->availableGeometry();
    const auto size = qt::firstWindowSize({double(available.width()), double(available.height())});
    device.idiom = qt::idiomOfSize(size);
    device.screenScale = screen->devicePixelRatio();
    device.layoutDirection = QGuiApplication::layoutDirection() == Qt::RightToLeft ? LayoutDirection::RightToLeft
                                                                                   : LayoutDirection::LeftToRight;
    device.textScale = appearance.textScale();
    device.setScreenBounds({0, 0, size.width, size.height});
}

} // namespace

// In the order in which they need each other.
struct WindowShell::Parts {
    explicit Parts(int endDescriptor)
        : application(argumentCount, arguments.data()),
          loop(platform::installed().mainQueue, platform::installed().clock)
    {
        qt::forgetTriedDisplay();
        nameApplication();
        if (endDescriptor >= 0)
            quitWhenReadable(endDescriptor);
        QObject::connect(&appearance, &qt::SystemAppearance::fontChanged, &application,
                         [this] { measurer.fontChanged(); });
        auto& device = platform::installed().device;
        device.setTextMeasurer(&measurer);
        describeDevice(device, appearance);
    }

    void quitWhenReadable(int descriptor)
    {
        auto* const end = new QSocketNotifier(descriptor, QSocketNotifier::Read, &application);
        QObject::connect(end, &QSocketNotifier::activated, &application, [end] {
            end->setEnabled(false);
            QGuiApplication::quit();
        });
    }

    ~Parts() { platform::installed().device.setTextMeasurer(nullptr); }

    std::array<char, 12> name{"tesseldrive"};
    std::array<char*, 2> arguments{name.data(), nullptr};
    int argumentCount = 1;
    QGuiApplication application;
    qt::EventLoop loop;
    qt::SystemAppearance appearance;
    qt::QtTextMeasurer measurer;
};

std::optional<std::string> WindowShell::whyNoWindow()
{
    return qt::chooseDisplay();
}

WindowShell::WindowShell(int endDescriptor)
{
    chooseRenderer();
    parts_ = std::make_unique<Parts>(endDescriptor);
}

WindowShell::~WindowShell() = default;

bool WindowShell::run(Application& application)
{
    qt::Shell shell(parts_->appearance);
    shell.sync();
    const qt::Scene scene(shell);
    auto* const window = scene.window();
    if (window) {
        const qt::ApplicationLife life(application, shell, *window);
        QGuiApplication::exec();
        const auto bounds = platform::installed().device.screenBounds();
        qt::rememberWindowSize({bounds.width, bounds.height});
    }
    application.resignActive();
    return window != nullptr;
}

} // namespace tessel
