#include "platform/qt/PairedDevices.h"

#include "platform/base/NotificationCenter.h"
#include "platform/base/Platform.h"
#include "platform/log/UnifiedLog.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QRegularExpression>

#include <algorithm>
#include <tuple>
#include <utility>

namespace tessel::qt {

namespace {

constexpr const char* kService = "org.kde.kdeconnect";
constexpr const char* kDaemonPath = "/modules/kdeconnect";
constexpr const char* kDaemon = "org.kde.kdeconnect.daemon";
constexpr const char* kDevice = "org.kde.kdeconnect.device";
constexpr const char* kShare = "org.kde.kdeconnect.device.share";

constexpr int kLookPatience = 2'000;  // milliseconds
constexpr int kSendPatience = 10'000; // milliseconds
constexpr qsizetype kMostDevices = 20;
constexpr qsizetype kLongestName = 100;

QString pathOf(const QString& identifier)
{
    return QString(kDaemonPath) + "/devices/" + identifier;
}

/// It becomes a part of an object's path.
bool isIdentifier(const QString& text)
{
    static const QRegularExpression form("\\A[A-Za-z0-9_]{1,100}\\z");
    return form.match(text).hasMatch();
}

std::string nameIn(const QDBusPendingCall& answer)
{
    const QDBusPendingReply<QDBusVariant> reply = answer;
    const auto value = reply.isError() ? QVariant() : reply.value().variant();
    return value.typeId() == QMetaType::QString ? value.toString().trimmed().left(kLongestName).toStdString() : "";
}

} // namespace

/// One look at all devices, while their names are asked for.
struct PairedDevices::Look {
    std::vector<PairedDevice> devices;
    qsizetype unanswered = 0;
};

PairedDevices::PairedDevices(const QDBusConnection& bus, Sharing& sharing) : bus_(bus), sharing_(sharing)
{
    auto* const watcher = new QDBusServiceWatcher(kService, bus_, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this, &PairedDevices::look);
    // Whoever says that something has changed: it only leads to a question. Naming the sender would have Qt wait for
    // the bus.
    for (const auto* const change : {"deviceListChanged", "deviceVisibilityChanged", "deviceAdded", "deviceRemoved"})
        bus_.connect({}, kDaemonPath, kDaemon, change, this, SLOT(look()));
    for (const auto* const change : {"reachableChanged", "nameChanged"})
        bus_.connect({}, {}, kDevice, change, this, SLOT(look()));
    sharing_.lookForDevices = [this] { look(); };
    sharing_.sendToDevice = [this](const PairedDevice& device, const URL& document,
                                   const std::function<void(bool)>& ended) { send(device, document, ended); };
    look();
}

PairedDevices::~PairedDevices()
{
    sharing_.lookForDevices = nullptr;
    sharing_.sendToDevice = nullptr;
    tell({});
}

void PairedDevices::look()
{
    if (std::exchange(isLooking_, true)) {
        looksAgain_ = true;
        return;
    }
    auto question = QDBusMessage::createMethodCall(kService, kDaemonPath, kDaemon, "devices");
    question << true << true; // reachable ones, paired ones
    ask(question, kLookPatience, [this](const QDBusPendingCall& answer) {
        const QDBusPendingReply<QStringList> reply = answer;
        askForNames(reply.isError() ? QStringList() : reply.value());
    });
}

void PairedDevices::askForNames(const QStringList& identifiers)
{
    auto known = identifiers.mid(0, kMostDevices);
    known.removeDuplicates();
    known.removeIf([](const QString& identifier) { return !isIdentifier(identifier); });
    const auto looked = std::make_shared<Look>();
    looked->unanswered = known.size();
    if (known.isEmpty())
        return finish(looked);
    for (const auto& identifier : known) {
        auto question =
            QDBusMessage::createMethodCall(kService, pathOf(identifier), "org.freedesktop.DBus.Properties", "Get");
        question << kDevice << "name";
        ask(question, kLookPatience, [this, looked, identifier](const QDBusPendingCall& answer) {
            if (auto name = nameIn(answer); !name.empty())
                looked->devices.push_back({identifier.toStdString(), std::move(name)});
            if (--looked->unanswered == 0)
                finish(looked);
        });
    }
}

void PairedDevices::finish(const std::shared_ptr<Look>& looked)
{
    isLooking_ = false;
    tell(std::move(looked->devices));
    if (std::exchange(looksAgain_, false))
        look();
}

void PairedDevices::tell(std::vector<PairedDevice> devices)
{
    std::ranges::sort(devices, {}, [](const auto& device) { return std::tie(device.name, device.identifier); });
    if (devices == sharing_.pairedDevices)
        return;
    sharing_.pairedDevices = std::move(devices);
    platform::installed().notifications.post(kPairedDevicesChangedNotification);
}

void PairedDevices::send(const PairedDevice& device, const URL& document, const std::function<void(bool)>& ended)
{
    const auto path = pathOf(QString::fromStdString(device.identifier)) + "/share";
    auto request = QDBusMessage::createMethodCall(kService, path, kShare, "shareUrl");
    request << QString::fromStdString(document.absoluteString());
    ask(request, kSendPatience, [device, document, ended](const QDBusPendingCall& answer) {
        if (answer.isError())
            platform::installed().log.write(LogLevel::Error, "Cannot send %@ to %@: %@", document, device.name,
                                            answer.error().message().toStdString());
        ended(!answer.isError());
    });
}

void PairedDevices::ask(QDBusMessage question, int milliseconds, const Answered& answered)
{
    question.setAutoStartService(false);
    auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(question, milliseconds), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, answered] {
        watcher->deleteLater();
        answered(*watcher);
    });
}

} // namespace tessel::qt
