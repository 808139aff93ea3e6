#include "platform/qt/DesktopSettings.h"
#include "platform/base/Platform.h"
#include "platform/cloud/UserDefaults.h"
#include "platform/qt/SystemAppearance.h"
#include "tests/support/InstalledPlatform.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QTest>

#include <gtest/gtest.h>

namespace tessel::qt {
namespace {

/// What a desktop offers on its bus.
class Portal final : public QDBusVirtualObject {
public:
    uint scheme = 0;

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        if (message.member() != "Read" ||
            message.arguments() != QVariantList{"org.freedesktop.appearance", "color-scheme"})
            return false;
        const auto inner = QVariant::fromValue(QDBusVariant(scheme));
        return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(inner))));
    }
};

/// A bus of the test's own.
class DesktopSettingsTest : public testing::Test {
protected:
    DesktopSettingsTest()
    {
        daemon.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
        EXPECT_TRUE(QTest::qWaitFor([this] { return daemon.canReadLine(); }, 20'000));
        address = QString::fromLatin1(daemon.readLine()).trimmed();
    }
    ~DesktopSettingsTest() override
    {
        QDBusConnection::disconnectFromBus("desktop");
        QDBusConnection::disconnectFromBus("program");
        daemon.kill();
        daemon.waitForFinished();
    }

    [[nodiscard]] QDBusConnection connection(const QString& name) const
    {
        return QDBusConnection::connectToBus(address, name);
    }
    [[nodiscard]] QDBusConnection openPortal(uint scheme)
    {
        portal.scheme = scheme;
        auto desktop = connection("desktop");
        EXPECT_TRUE(desktop.registerVirtualObject("/org/freedesktop/portal/desktop", &portal));
        EXPECT_TRUE(desktop.registerService("org.freedesktop.portal.Desktop"));
        return desktop;
    }
    void change(const QDBusConnection& desktop, const QString& space, uint scheme) const
    {
        auto change = QDBusMessage::createSignal("/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings",
                                                 "SettingChanged");
        change << space << "color-scheme" << QVariant::fromValue(QDBusVariant(scheme));
        desktop.send(change);
    }
    [[nodiscard]] static bool becomes(const std::function<bool()>& condition)
    {
        return QTest::qWaitFor(condition, 20'000);
    }

    QProcess daemon;
    QString address;
    Portal portal;
    const InstalledPlatform platform;
};

TEST_F(DesktopSettingsTest, FollowTheColoursThatTheUserPrefers)
{
    const auto desktop = openPortal(1);
    const DesktopSettings settings(connection("program"));
    ASSERT_TRUE(becomes([&] { return settings.prefersDark() == true; }));
    change(desktop, "org.freedesktop.appearance", 2);
    EXPECT_TRUE(becomes([&] { return settings.prefersDark() == false; }));
    change(desktop, "org.example.other", 1);
    change(desktop, "org.freedesktop.appearance", 0);
    EXPECT_TRUE(becomes([&] { return settings.prefersDark() != false; }));
    EXPECT_EQ(settings.prefersDark(), std::nullopt);
}

TEST_F(DesktopSettingsTest, AreUnknownWhereThereIsNoPortal)
{
    const DesktopSettings settings(connection("program"));
    bool isAnswered = false;
    QObject::connect(&settings, &DesktopSettings::changed, [&] { isAnswered = true; });
    ASSERT_TRUE(becomes([&] { return isAnswered; }));
    EXPECT_EQ(settings.prefersDark(), std::nullopt);
}

// A window that came up light and then turned dark would dazzle at night.
TEST_F(DesktopSettingsTest, TheLookOfTheLastTimeHoldsUntilTheDesktopAnswers)
{
    const auto desktop = openPortal(1);
    {
        SystemAppearance appearance;
        EXPECT_FALSE(appearance.isDark());
        appearance.followDesktop(connection("program"));
        ASSERT_TRUE(becomes([&] { return appearance.isDark(); }));
    }
    SystemAppearance next;
    EXPECT_TRUE(next.isDark());
    change(desktop, "org.freedesktop.appearance", 2);
    next.followDesktop(connection("program"));
    portal.scheme = 2;
    EXPECT_TRUE(becomes([&] { return !next.isDark(); }));
}

} // namespace
} // namespace tessel::qt
