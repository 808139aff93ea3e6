#pragma once

#include "platform/ui/OutsideRequest.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QObject>

#include <functional>

namespace tessel {
class SystemSearch;
} // namespace tessel

namespace tessel::qt {

using RequestHandler = std::function<void(const OutsideRequest&)>;

/// org.freedesktop.Application: how the desktop starts the program, has it open something, or presses one of its
/// shortcuts: "search", and "recent" with a document's number, as a parameter or in the name.
class ApplicationCalls final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    ApplicationCalls(QObject& object, const RequestHandler& handler) : QDBusAbstractAdaptor(&object), handler_(handler)
    {
    }

    Q_SLOT void Activate(const QVariantMap& platformData);
    Q_SLOT void Open(const QStringList& uris, const QVariantMap& platformData);
    Q_SLOT void ActivateAction(const QString& name, const QVariantList& parameter, const QVariantMap& platformData);

private:
    const RequestHandler& handler_;
};

/// org.freedesktop.FileManager1: how other programs show files, for those in the drive; others are refused as any URL
/// is. Offered under the program's own name: the user's file manager keeps the common one.
class FileManagerCalls final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    FileManagerCalls(QObject& object, const RequestHandler& handler) : QDBusAbstractAdaptor(&object), handler_(handler)
    {
    }

    Q_SLOT void ShowFolders(const QStringList& uris, const QString& startupId);
    Q_SLOT void ShowItems(const QStringList& uris, const QString& startupId);
    Q_SLOT void ShowItemProperties(const QStringList& uris, const QString& startupId);

private:
    const RequestHandler& handler_;
};

/// The program on the session's bus, as orvane.TesselDrive. Calls with arguments of other types are answered by an
/// error of the bus's own. Main thread only.
class DesktopService {
public:
    /// @param handler outlives this
    /// @param search likewise; null: the desktop's search gets no answers
    DesktopService(QDBusConnection bus, const RequestHandler& handler, SystemSearch* search);
    ~DesktopService();
    DesktopService(const DesktopService&) = delete;
    DesktopService& operator=(const DesktopService&) = delete;

private:
    QDBusConnection bus_;
    QObject application_;
    QObject files_;
    QObject search_;
};

} // namespace tessel::qt
