#include "platform/qt/lists/DocumentLook.h"

#include "platform/base/Platform.h"
#include "platform/documents/DocumentIcon.h"
#include "platform/files/TypeRegistry.h"
#include "platform/qt/thumbnails/ThumbnailSwitch.h"
#include "platform/qt/views/ImageSources.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>

namespace tessel::qt {

namespace {

constexpr std::uint64_t kLargestWithThumbnail = 200'000'000; // bytes
constexpr std::size_t kMostTypesKept = 1000;

constexpr std::string_view kTypesWithThumbnails[] = {"public.image", "public.text", "com.adobe.pdf"};

QString source(std::string_view names, const char* kind)
{
    const auto text = QString::fromUtf8(names.data(), static_cast<qsizetype>(names.size())).replace(u' ', u'|');
    return QStringLiteral("image://icon/") + text + u'?' + QLatin1String(kind);
}

struct Look {
    QString icon;
    bool canHaveThumbnail = false;
};

Look lookOfType(const std::string& type)
{
    const auto& types = platform::installed().types;
    const auto isA = [&](std::string_view ancestor) { return types.conforms(type, ancestor); };
    return {source(documentIconNames(type), "file"),
            std::any_of(std::begin(kTypesWithThumbnails), std::end(kTypesWithThumbnails), isA)};
}

/// Kept by extension, or by whole name without one.
const Look& lookOfDocument(const URL& url)
{
    static std::unordered_map<std::string, Look> looks;
    auto key = std::string(url.pathExtension().empty() ? url.lastPathComponent() : url.pathExtension());
    if (!url.pathExtension().empty())
        key.insert(key.begin(), '.'); // no file is called so: it would be its whole name
    if (const auto known = looks.find(key); known != looks.end())
        return known->second;
    if (looks.size() >= kMostTypesKept)
        looks.clear();
    const auto type = platform::installed().types.identifierForFileName(url.lastPathComponent());
    return looks.emplace(std::move(key), lookOfType(type)).first->second;
}

} // namespace

QString iconSource(const ListRow& row)
{
    static const auto folder = source("folder", "folder");
    static const auto library = source("library", "library");
    static const auto package = source("package", "package");
    static const auto link = source("inode-symlink link", "link");
    switch (row.kind) {
    case RowKind::Folder:
        return folder;
    case RowKind::Library:
        return library;
    case RowKind::Package:
        return package;
    case RowKind::Link:
        return link;
    case RowKind::File:
        break;
    }
    return lookOfDocument(row.url).icon;
}

QString thumbnailSource(const ListRow& row)
{
    const bool hasContent = row.size && *row.size > 0 && *row.size <= kLargestWithThumbnail;
    if (row.kind != RowKind::File || row.inCloud || !hasContent || !row.modified ||
        !lookOfDocument(row.url).canHaveThumbnail || !showsThumbnails())
        return {};
    return QStringLiteral("image://thumbnail/") + percentEncoded(row.url.path()) + u'?' +
           QString::number(row.modified->nanoseconds);
}

} // namespace tessel::qt
