#pragma once

#include <QDBusConnection>
#include <QObject>

#include <optional>

class QDBusMessage;
class QDBusPendingCallWatcher;

namespace tessel::qt {

/// What the user has set for all programs, as the desktop's portal tells it on the session's bus:
/// org.freedesktop.portal.Settings.
class DesktopSettings final : public QObject {
    Q_OBJECT

public:
    /// Asks, and waits for nothing.
    explicit DesktopSettings(const QDBusConnection& bus);

    /// Nothing until the desktop has answered, where it has no portal, and where the user prefers neither.
    [[nodiscard]] std::optional<bool> prefersDark() const { return prefersDark_; }

signals:
    /// The desktop has answered, which may be that it knows nothing, or the user has changed something.
    void changed();

private:
    Q_SLOT void settingChanged(const QDBusMessage& change);
    void answered(const QDBusPendingCallWatcher&);
    void take(const QVariant& value);

    std::optional<bool> prefersDark_;
};

} // namespace tessel::qt
