#include "platform/qt/lists/RowValue.h"

#include "platform/base/Platform.h"
#include "platform/cloud/CloudService.h"
#include "platform/qt/lists/DocumentLook.h"
#include "platform/qt/views/Colors.h"
#include "platform/text/TextServices.h"

#include <QStringList>
#include <QVariantMap>

namespace tessel::qt {

namespace {

QString localized(const char* key)
{
    return QString::fromStdString(platform::installed().text.localized(key));
}

QString kindOf(RowKind kind)
{
    switch (kind) {
    case RowKind::File:
        return QStringLiteral("file");
    case RowKind::Folder:
        return QStringLiteral("folder");
    case RowKind::Package:
        return QStringLiteral("package");
    case RowKind::Link:
        return QStringLiteral("link");
    case RowKind::Library:
        return QStringLiteral("library");
    }
    return {};
}

QString kindText(RowKind kind)
{
    switch (kind) {
    case RowKind::File:
        return localized("Document");
    case RowKind::Folder:
        return localized("Folder");
    case RowKind::Package:
        return localized("Package");
    case RowKind::Link:
        return localized("Link");
    case RowKind::Library:
        return localized("Library");
    }
    return {};
}

QString sizeText(const ListRow& row)
{
    const auto& text = platform::installed().text;
    if (row.size)
        return QString::fromStdString(text.byteCount(*row.size, ByteCountStyle::File));
    if (row.itemCount)
        return QString::fromStdString(text.localizedCount(".DICT.ITEMS.%d", *row.itemCount));
    return {};
}

QString dateText(const ListRow& row)
{
    const auto& text = platform::installed().text;
    return row.modified ? QString::fromStdString(text.dateAndTime(*row.modified, DateStyle::Medium)) : QString();
}

QString joined(QStringList parts, const QString& separator)
{
    parts.removeAll(QString());
    return parts.join(separator);
}

QVariantList tagMaps(const ListRow& row)
{
    QVariantList tags;
    for (const auto& tag : row.tags)
        tags.append(QVariantMap{{"name", QString::fromStdString(platform::installed().text.displayName(tag.name))},
                                {"color", adaptedColor(tag.color.value_or(Color::clear()), false)}});
    return tags;
}

QString tagText(const RowValue& value)
{
    QStringList names;
    for (const auto& tag : value.tags)
        names.append(tag.toMap().value("name").toString());
    return names.isEmpty() ? QString() : localized("Tags: %@").replace("%@", names.join(", "));
}

QString stateText(const ListRow& row)
{
    if (row.downloadProgress)
        return localized("Downloading");
    return row.inCloud ? localized("in the cloud") : QString();
}

/// All but the subtitle and the name for assistive technology.
RowValue plainValue(const ListRow& row)
{
    RowValue value;
    value.title = QString::fromStdString(row.title);
    value.kind = kindOf(row.kind);
    value.iconSource = iconSource(row);
    value.thumbnailSource = thumbnailSource(row);
    value.tags = tagMaps(row);
    value.inCloud = row.inCloud;
    value.progress = row.downloadProgress.value_or(-1);
    value.selected = row.selected;
    value.enabled = row.enabled;
    value.opensList = row.kind == RowKind::Folder || row.kind == RowKind::Library;
    return value;
}

/// Where an item lies: its folder, from the top of its library or of the drive on. Libraries lie in the drive's top.
QString placeText(const URL& url)
{
    const auto& text = platform::installed().text;
    const auto& cloud = platform::installed().cloud;
    auto container = cloud.containerForURL(url);
    if (container && container->documentsURL == url)
        container = cloud.defaultContainer();
    if (!container)
        return {};
    QStringList names;
    const auto& top = container->documentsURL;
    for (auto folder = url.deletingLastPathComponent(); folder != top && top.contains(folder);
         folder = folder.deletingLastPathComponent())
        names.prepend(QString::fromStdString(text.displayName(folder.lastPathComponent())));
    names.prepend(QString::fromStdString(container->localizedName));
    return names.join(QStringLiteral(" › "));
}

} // namespace

RowValue folderRowValue(const ListRow& row)
{
    auto value = plainValue(row);
    const auto size = sizeText(row);
    const auto date = dateText(row);
    value.subtitle = joined({size, date}, QStringLiteral(" · "));
    value.accessibleName = joined({value.title, kindText(row.kind), size, date, stateText(row), tagText(value)}, ", ");
    return value;
}

RowValue searchRowValue(const ListRow& row)
{
    auto value = plainValue(row);
    value.subtitle = placeText(row.url);
    value.accessibleName =
        joined({value.title, kindText(row.kind), sizeText(row), value.subtitle, stateText(row), tagText(value)}, ", ");
    return value;
}

} // namespace tessel::qt
