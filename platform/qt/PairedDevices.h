#pragma once

#include "platform/ui/Sharing.h"

#include <QDBusConnection>
#include <QObject>

#include <functional>
#include <memory>

class QDBusMessage;
class QDBusPendingCall;

namespace tessel::qt {

/// The user's other devices that can be reached now, and sending them documents, where the service org.kde.kdeconnect
/// is on the session's bus. It is never started for this, nothing waits for it, and of its answers nothing is believed
/// but what has the right form. Main thread only.
class PairedDevices final : public QObject {
    Q_OBJECT

public:
    /// @param sharing the device's; what this puts there is taken back at the end
    PairedDevices(const QDBusConnection& bus, Sharing& sharing);
    ~PairedDevices() override;

private:
    using Answered = std::function<void(const QDBusPendingCall&)>;
    struct Look;

    Q_SLOT void look();
    void askForNames(const QStringList& identifiers);
    void finish(const std::shared_ptr<Look>&);
    void tell(std::vector<PairedDevice>);
    void send(const PairedDevice&, const URL& document, const std::function<void(bool)>& ended);
    void ask(QDBusMessage question, int milliseconds, const Answered&);

    QDBusConnection bus_;
    Sharing& sharing_;
    bool isLooking_ = false;
    bool looksAgain_ = false; ///< asked for while looking
};

} // namespace tessel::qt
