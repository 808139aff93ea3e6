#include "platform/qt/WindowShell.h"

#include "platform/base/Platform.h"
#include "platform/qt/ApplicationLife.h"
#include "platform/qt/DesktopService.h"
#include "platform/qt/Display.h"
#include "platform/qt/EventLoop.h"
#include "platform/qt/PairedDevices.h"
#include "platform/qt/Scene.h"
#include "platform/qt/SharedClipboard.h"
#include "platform/qt/Shell.h"
#include "platform/qt/SystemAppearance.h"
#include "platform/qt/WindowSize.h"
#include "platform/qt/views/QtTextMeasurer.h"
#include "platform/ui/Application.h"
#include "platform/ui/Device.h"

#include <QDBusConnection>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QHashFunctions>
#include <QIcon>
#include <QLoggingCategory>
#include <QQuickWindow>
#include <QSGRendererInterface>
#include <QScreen>
#include <QSocketNotifier>

#include <array>
#include <future>

namespace tessel {

namespace {

/// Painting by the processor starts quicker, takes less memory, and is the same on every machine.
bool isSoftware()
{
    return !qEnvironmentVariableIsSet("QSG_RHI_BACKEND") && !qEnvironmentVariableIsSet("QT_QUICK_BACKEND") &&
           qEnvironmentVariable("TESSELDRIVE_GL") != "1";
}

/// Even so Qt would load OpenGL's drivers on Wayland, tens of megabytes, unless it is to use one that does not exist,
/// of which it complains. The programs that this one starts shall not inherit that.
class NoWaylandDrivers {
public:
    NoWaylandDrivers() : isWanted_(isSoftware() && !qEnvironmentVariableIsSet(kDriver))
    {
        if (!isWanted_)
            return;
        qputenv(kDriver, "none");
        QLoggingCategory::setFilterRules("qt.qpa.wayland.warning=false");
    }
    ~NoWaylandDrivers()
    {
        if (isWanted_)
            qunsetenv(kDriver);
    }

private:
    static constexpr auto kDriver = "QT_WAYLAND_CLIENT_BUFFER_INTEGRATION";
    const bool isWanted_;
};

void nameApplication()
{
    QGuiApplication::setApplicationName("tesseldrive");
    QGuiApplication::setDesktopFileName("orvane.TesselDrive");
    QGuiApplication::setWindowIcon(QIcon(":/tessel/app/orvane.TesselDrive.svg"));
    const auto direction = platform::installed().device.layoutDirection;
    QGuiApplication::setLayoutDirection(direction == LayoutDirection::RightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
}

/// Which fonts there are takes milliseconds to find out, in which this thread has other things to begin.
/// @returns a future that waits for the end of it when it goes
std::future<void> readFonts()
{
    return std::async(std::launch::async, [font = QGuiApplication::font()] { QFontMetricsF(font).ascent(); });
}

void describeDevice(Device& device, const qt::SystemAppearance& appearance)
{
    const auto* const screen = QGuiApplication::primaryScreen();
    const auto available = screen ? screen->availableSize() : QSize(900, 640); // it may come later
    const auto size = qt::firstWindowSize({double(available.width()), double(available.height())});
    device.idiom = qt::idiomOfSize(size);
    device.screenScale = screen ? screen->devicePixelRatio() : 1;
    device.textScale = appearance.textScale();
    device.setScreenBounds({0, 0, size.width, size.height});
}

/// By the token of whoever has asked, where the desktop wants one; it is read from the environment.
void comeToFront(QWindow& window, const std::string& token)
{
    constexpr auto kToken = "XDG_ACTIVATION_TOKEN";
    if (!token.empty())
        qputenv(kToken, QByteArray::fromStdString(token));
    if (window.visibility() == QWindow::Minimized)
        window.showNormal();
    if (QGuiApplication::platformName() == "xcb") // elsewhere the desktop decides
        window.raise();
    window.requestActivate();
    qunsetenv(kToken);
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
        qt::copyToClipboard(device.sharing);
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

    std::string name = "tesseldrive";
    std::string platformOption = "-platform";
    std::string platformName = qt::chosenPlatform();
    std::array<char*, 4> arguments{name.data(), platformOption.data(), platformName.data(), nullptr};
    int argumentCount = platformName.empty() ? 1 : 3;
    std::optional<NoWaylandDrivers> noWaylandDrivers{std::in_place}; ///< until the window is there
    QGuiApplication application;
    qt::EventLoop loop;
    qt::SystemAppearance appearance;
    qt::QtTextMeasurer measurer;
    std::future<void> fonts = readFonts();
    std::optional<qt::Scene> scene{std::in_place};
    Application* running = nullptr;
    qt::RequestHandler handler;
    std::optional<qt::DesktopService> service;
    std::optional<qt::PairedDevices> devices;
};

std::optional<std::string> WindowShell::whyNoWindow()
{
    return qt::chooseDisplay();
}

WindowShell::WindowShell(int endDescriptor)
{
    // A tenth of the start is hashing where processors wake their wide instructions for it. The keys here are the
    // program's own names: nobody can choose many of them.
    QHashSeed::setDeterministicGlobalSeed();
    if (isSoftware())
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    parts_ = std::make_unique<Parts>(endDescriptor);
    parts_->handler = [this](const OutsideRequest& request) { take(request); };
}

WindowShell::~WindowShell() = default;

void WindowShell::take(const OutsideRequest& request)
{
    auto* const window = parts_->scene ? parts_->scene->window() : nullptr;
    if (!window || !parts_->running)
        return;
    perform(*parts_->running, request);
    comeToFront(*window, request.activationToken);
}

bool WindowShell::run(Application& application, const DesktopRole& role)
{
    qt::Shell shell(parts_->appearance);
    parts_->loop.drain();
    shell.sync();
    parts_->scene->prepare(shell);
    parts_->scene->load();
    parts_->loop.drain(); // so that the first picture shows what has been found meanwhile
    shell.sync();
    parts_->scene->open(shell);
    auto* const window = parts_->scene->window();
    parts_->noWaylandDrivers.reset();
    if (window) {
        // The bus can wait until there is something to see.
        QObject::connect(
            window, &QQuickWindow::frameSwapped, &parts_->appearance,
            [this, role] {
                const auto bus = QDBusConnection::sessionBus();
                parts_->appearance.followDesktop(bus);
                parts_->devices.emplace(bus, platform::installed().device.sharing);
                if (role.ownsName)
                    parts_->service.emplace(bus, parts_->handler, role.search);
            },
            static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
        const qt::ApplicationLife life(application, shell, *window);
        parts_->running = &application;
        QGuiApplication::exec();
        parts_->running = nullptr;
        parts_->service.reset();
        parts_->devices.reset();
        const auto bounds = platform::installed().device.screenBounds();
        qt::rememberWindowSize({bounds.width, bounds.height});
    }
    parts_->scene.reset();
    application.resignActive();
    return window != nullptr;
}

} // namespace tessel
