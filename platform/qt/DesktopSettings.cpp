#include "platform/qt/DesktopSettings.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace tessel::qt {

namespace {

constexpr const char* kService = "org.freedesktop.portal.Desktop";
constexpr const char* kPath = "/org/freedesktop/portal/desktop";
constexpr const char* kInterface = "org.freedesktop.portal.Settings";
constexpr const char* kSpace = "org.freedesktop.appearance";
constexpr const char* kKey = "color-scheme";
constexpr uint kDark = 1;
constexpr uint kLight = 2;

/// The portal's older method wraps its answer once more.
QVariant unwrapped(QVariant value)
{
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

DesktopSettings::DesktopSettings(const QDBusConnection& connection)
{
    auto bus = connection;
    bus.connect(kService, kPath, kInterface, "SettingChanged", this, SLOT(settingChanged(QDBusMessage)));
    auto question = QDBusMessage::createMethodCall(kService, kPath, kInterface, "Read");
    question << kSpace << kKey;
    auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        answered(*watcher);
    });
}

void DesktopSettings::answered(const QDBusPendingCallWatcher& watcher)
{
    const QDBusPendingReply<QDBusVariant> reply = watcher;
    take(reply.isError() ? QVariant() : QVariant::fromValue(reply.value()));
}

void DesktopSettings::settingChanged(const QDBusMessage& change)
{
    const auto words = change.arguments();
    if (words.size() == 3 && words[0] == kSpace && words[1] == kKey)
        take(words[2]);
}

void DesktopSettings::take(const QVariant& value)
{
    bool isNumber = false;
    const auto scheme = unwrapped(value).toUInt(&isNumber);
    const bool isPreferred = isNumber && (scheme == kDark || scheme == kLight);
    prefersDark_ = isPreferred ? std::optional(scheme == kDark) : std::nullopt;
    emit changed();
}

} // namespace tessel::qt
