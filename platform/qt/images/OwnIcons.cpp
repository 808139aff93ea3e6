#include "platform/qt/images/OwnIcons.h"

#include <QFile>

#include <algorithm>
#include <iterator>

namespace tessel::qt {

namespace {

struct Family {
    const char* prefix; ///< of an icon's name
    const char* icon;
};

// Names that have no icon of their own, the longer prefix before the shorter one.
// clang-format off
constexpr Family kFamilies[] = {
    {"image-svg", "x-office-drawing"},
    {"image-", "image-x-generic"},
    {"audio-", "audio-x-generic"},
    {"video-", "video-x-generic"},
    {"font-", "font-x-generic"},
    {"application-x-font", "font-x-generic"},
    {"text-calendar", "x-office-calendar"},
    {"text-vcard", "x-office-address-book"},
    {"text-csv", "x-office-spreadsheet"},
    {"text-rtf", "x-office-document"},
    {"text-richtext", "x-office-document"},
    {"text-css", "text-x-script"},
    {"text-xml", "text-x-script"},
    {"text-x-", "text-x-script"},
    {"text-", "text-x-generic"},
    {"application-json", "text-x-script"},
    {"application-xml", "text-x-script"},
    {"application-javascript", "text-x-script"},
    {"application-x-shellscript", "text-x-script"},
    {"application-xhtml", "text-html"},
    {"application-rtf", "x-office-document"},
    {"application-epub", "x-office-document"},
    {"application-zip", "package-x-generic"},
    {"application-gzip", "package-x-generic"},
    {"application-x-tar", "package-x-generic"},
    {"application-x-compressed", "package-x-generic"},
    {"application-x-7z", "package-x-generic"},
    {"folder-", "folder"},
};
// clang-format on

QString path(const QString& icon)
{
    return ":/tessel/icons/" + icon + ".svg";
}

QString pathForName(const QString& name)
{
    if (const auto exact = path(name); QFile::exists(exact))
        return exact;
    const auto* family = std::ranges::find_if(
        kFamilies, [&](const Family& each) { return name.startsWith(QLatin1String(each.prefix)); });
    return family == std::end(kFamilies) ? QString() : path(family->icon);
}

} // namespace

QString ownIconPath(const QStringList& names, const QString& kind)
{
    for (const auto& name : names) {
        if (const auto found = pathForName(name); !found.isEmpty())
            return found;
    }
    const auto ofKind = path(kind);
    return QFile::exists(ofKind) ? ofKind : path("unknown");
}

} // namespace tessel::qt
