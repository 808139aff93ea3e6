#include "platform/qt/lists/FolderList.h"

#include <QByteArray>

namespace tessel::qt {

namespace {

constexpr const char* kFiles = "text/uri-list"; // RFC 2483

/// The local files among them, whatever bytes their names have.
std::vector<URL> filesOf(const QList<QUrl>& urls)
{
    std::vector<URL> files;
    for (const auto& url : urls)
        if (url.isLocalFile())
            files.push_back(
                URL::file(QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()).toStdString()));
    return files;
}

} // namespace

QVariantMap FolderList::dragged(int row) const
{
    const auto controller = controller_.lock();
    const auto now = indexNow(row);
    if (!controller || !now)
        return {};
    std::string list;
    for (const auto& item : controller->itemsDraggedWith(*now))
        list += item.absoluteString() + "\r\n";
    return list.empty() ? QVariantMap() : QVariantMap{{kFiles, QString::fromStdString(list)}};
}

std::optional<URL> FolderList::folderForDrop(const std::vector<URL>& items, int row) const
{
    const auto controller = controller_.lock();
    const auto now = row < 0 ? std::nullopt : indexNow(row);
    return controller && (row < 0 || now) ? controller->folderForDrop(items, now) : std::nullopt;
}

bool FolderList::takes(const QList<QUrl>& urls, int row) const
{
    return folderForDrop(filesOf(urls), row).has_value();
}

void FolderList::take(const QList<QUrl>& urls, int row)
{
    const auto items = filesOf(urls);
    const auto controller = controller_.lock();
    if (const auto folder = folderForDrop(items, row); folder && controller)
        controller->drop(items, *folder);
}

} // namespace tessel::qt
