#include "platform/qt/SearchCalls.h"

#include "platform/base/Platform.h"
#include "platform/cloud/CloudService.h"
#include "platform/files/ResourceValues.h"
#include "platform/text/TextServices.h"

#include <QDBusMetaType>

namespace tessel::qt {

namespace {

std::vector<std::string> textsOf(const QStringList& list)
{
    std::vector<std::string> texts;
    for (const auto& text : list)
        texts.push_back(text.toStdString());
    return texts;
}

QString shownName(std::string_view name)
{
    return QString::fromStdString(platform::installed().text.displayName(name));
}

/// Nothing of the drive is shown to somebody who is not signed in.
bool isSignedIn()
{
    return platform::installed().cloud.identityToken().has_value();
}

/// The number by which a document is known, in digits; none for what has none.
std::optional<std::string> numberOf(const URL& url)
{
    constexpr ResourceKey kKeys[] = {ResourceKey::DocumentIdentifier};
    const auto& resources = platform::installed().resources;
    for (const auto variant : {ValueVariant::Promised, ValueVariant::Plain}) {
        const auto values = resources.values(kKeys, url, variant);
        const auto found =
            values ? values->find(ResourceKey::DocumentIdentifier) : ResourceValues::Values::const_iterator();
        const auto* number = values && found != values->end() ? found->second.get<std::int64_t>() : nullptr;
        if (number)
            return std::to_string(*number);
    }
    return std::nullopt;
}

} // namespace

SearchCalls::SearchCalls(QObject& object, const QDBusConnection& bus, SystemSearch& search,
                         const RequestHandler& handler)
    : QDBusAbstractAdaptor(&object), bus_(bus), search_(search), handler_(handler)
{
    qDBusRegisterMetaType<QList<QVariantMap>>();
}

QStringList SearchCalls::GetInitialResultSet(const QStringList& terms, const QDBusMessage& question)
{
    answer(terms, question);
    return {};
}

QStringList SearchCalls::GetSubsearchResultSet(const QStringList& /*before*/, const QStringList& terms,
                                               const QDBusMessage& question)
{
    answer(terms, question);
    return {};
}

void SearchCalls::answer(const QStringList& terms, const QDBusMessage& question)
{
    if (!isSignedIn())
        return;
    question.setDelayedReply(true);
    search_.find(textsOf(terms), [bus = bus_, question](const std::vector<std::string>& found) {
        QStringList identifiers;
        for (const auto& identifier : found)
            identifiers.append(QString::fromStdString(identifier));
        bus.send(question.createReply(QVariant(identifiers)));
    });
}

QList<QVariantMap> SearchCalls::GetResultMetas(const QStringList& identifiers)
{
    QList<QVariantMap> metas;
    if (!isSignedIn())
        return metas;
    for (const auto& document : search_.documents(textsOf(identifiers)))
        metas.append({{"id", QString::fromStdString(document.identifier)},
                      {"name", shownName(document.url.lastPathComponent())},
                      {"description", shownName(document.url.deletingLastPathComponent().lastPathComponent())}});
    return metas;
}

void SearchCalls::ActivateResult(const QString& identifier, const QStringList& /*terms*/, uint /*time*/)
{
    OutsideRequest request;
    for (const auto& document : search_.documents({identifier.toStdString()})) {
        if (const auto number = numberOf(document.url))
            request.activity =
                UserActivity{UserActivity::kSearchResult, {{UserActivity::kSearchItemIdentifierKey, *number}}};
        else
            request.urls.push_back(applicationURL(document.url.path()));
    }
    handler_(request);
}

void SearchCalls::LaunchSearch(const QStringList& terms, uint /*time*/)
{
    OutsideRequest request;
    request.activity =
        UserActivity{UserActivity::kSearchQuery, {{UserActivity::kSearchQueryKey, terms.join(' ').toStdString()}}};
    handler_(request);
}

} // namespace tessel::qt
