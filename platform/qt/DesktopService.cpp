#include "platform/qt/DesktopService.h"

#include "platform/qt/SearchCalls.h"

#include <QUrl>

namespace tessel::qt {

namespace {

constexpr const char* kName = "orvane.TesselDrive";
constexpr const char* kApplicationPath = "/orvane/TesselDrive";
constexpr const char* kSearchPath = "/orvane/TesselDrive/SearchProvider";
constexpr const char* kFilesPath = "/org/freedesktop/FileManager1";
constexpr QLatin1String kRecent("recent");

std::string tokenIn(const QVariantMap& platformData)
{
    const auto token = platformData.value("activation-token").toString();
    return (token.isEmpty() ? platformData.value("desktop-startup-id").toString() : token).toStdString();
}

/// A document's number as D-Bus may tell it: as a number, or in digits, which may also stand behind the action's name.
std::optional<std::int64_t> numberIn(const QString& name, const QVariantList& parameter)
{
    if (!name.startsWith(kRecent))
        return std::nullopt;
    const QVariant digits = name.mid(kRecent.size());
    bool isNumber = false;
    const auto number = (name == kRecent && !parameter.isEmpty() ? parameter.front() : digits).toULongLong(&isNumber);
    return isNumber ? std::optional(static_cast<std::int64_t>(number)) : std::nullopt;
}

OutsideRequest requestFor(const QStringList& urls, const std::string& token)
{
    OutsideRequest request{.urls = {}, .shortcut = {}, .activationToken = token};
    for (const auto& url : urls)
        request.urls.push_back(url.toStdString());
    return request;
}

/// File URLs alone, as the application's own.
OutsideRequest filesRequest(const QStringList& uris, const QString& token, const std::string& mode)
{
    auto request = requestFor({}, token.toStdString());
    for (const auto& uri : uris) {
        const QUrl url(uri);
        if (url.isLocalFile())
            request.urls.push_back(applicationURLOf(uri.toStdString(), mode));
    }
    return request;
}

QStringList parentsOf(const QStringList& uris)
{
    QStringList parents;
    for (const auto& uri : uris)
        parents.append(
            QUrl(uri).adjusted(QUrl::StripTrailingSlash | QUrl::RemoveFilename).toString(QUrl::FullyEncoded));
    return parents;
}

} // namespace

void ApplicationCalls::Activate(const QVariantMap& platformData)
{
    handler_(requestFor({}, tokenIn(platformData)));
}

void ApplicationCalls::Open(const QStringList& uris, const QVariantMap& platformData)
{
    handler_(requestFor(uris, tokenIn(platformData)));
}

void ApplicationCalls::ActivateAction(const QString& name, const QVariantList& parameter,
                                      const QVariantMap& platformData)
{
    auto request = requestFor({}, tokenIn(platformData));
    if (name == "search")
        request.shortcut = ShortcutItem{ShortcutItem::kSearch, {}};
    else if (const auto number = numberIn(name, parameter))
        request.shortcut =
            ShortcutItem{ShortcutItem::kRecentDocument, {{ShortcutItem::kDocumentIdentifierKey, *number}}};
    handler_(request);
}

void FileManagerCalls::ShowFolders(const QStringList& uris, const QString& startupId)
{
    handler_(filesRequest(uris, startupId, {}));
}

void FileManagerCalls::ShowItems(const QStringList& uris, const QString& startupId)
{
    handler_(filesRequest(parentsOf(uris), startupId, {}));
}

void FileManagerCalls::ShowItemProperties(const QStringList& uris, const QString& startupId)
{
    handler_(filesRequest(uris, startupId, "details"));
}

DesktopService::DesktopService(QDBusConnection bus, const RequestHandler& handler, SystemSearch* search)
    : bus_(std::move(bus))
{
    new ApplicationCalls(application_, handler); // belongs to its object, as the next one does
    new FileManagerCalls(files_, handler);
    bus_.registerObject(kApplicationPath, &application_);
    bus_.registerObject(kFilesPath, &files_);
    if (search) {
        new SearchCalls(search_, bus_, *search, handler);
        bus_.registerObject(kSearchPath, &search_);
    }
    bus_.registerService(kName);
}

DesktopService::~DesktopService()
{
    bus_.unregisterService(kName);
    bus_.unregisterObject(kApplicationPath);
    bus_.unregisterObject(kFilesPath);
    bus_.unregisterObject(kSearchPath);
}

} // namespace tessel::qt
