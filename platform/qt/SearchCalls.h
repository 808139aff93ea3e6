#pragma once

#include "platform/documents/SystemSearch.h"
#include "platform/qt/DesktopService.h"

#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <QVariantMap>

namespace tessel::qt {

/// org.gnome.Shell.SearchProvider2: the desktop's search looks through the drive. Questions are answered by the index
/// when it has the answer, without waiting.
class SearchCalls final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.gnome.Shell.SearchProvider2")

public:
    /// The arguments outlive this.
    SearchCalls(QObject& object, const QDBusConnection& bus, SystemSearch& search, const RequestHandler& handler);

    Q_SLOT QStringList GetInitialResultSet(const QStringList& terms, const QDBusMessage& question);
    Q_SLOT QStringList GetSubsearchResultSet(const QStringList& before, const QStringList& terms,
                                             const QDBusMessage& question);
    Q_SLOT QList<QVariantMap> GetResultMetas(const QStringList& identifiers);
    Q_SLOT void ActivateResult(const QString& identifier, const QStringList& terms, uint time);
    Q_SLOT void LaunchSearch(const QStringList& terms, uint time);

private:
    void answer(const QStringList& terms, const QDBusMessage& question);

    const QDBusConnection bus_;
    SystemSearch& search_;
    const RequestHandler& handler_;
};

} // namespace tessel::qt
