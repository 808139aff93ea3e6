#include "platform/qt/images/IconProvider.h"

#include "platform/qt/images/OwnIcons.h"
#include "platform/qt/images/SvgPicture.h"

#include <QIcon>
#include <QPixmap>
#include <QSettings>
#include <QStandardPaths>
#include <QUrl>

#include <algorithm>

namespace tessel::qt {

namespace {

constexpr int kUsualSide = 48;              // pixels
constexpr int kKeptBytes = 4 * 1024 * 1024; // some hundred icons of a list, or fifty of a grid on a dense screen

int longerSide(QSize size)
{
    return std::max(size.width(), size.height());
}

// Desktops without a setting of their own keep the theme's name where their GTK programs read it.
QString themeNameOfSettingsFile()
{
    const auto path = QStandardPaths::locate(QStandardPaths::GenericConfigLocation, "gtk-3.0/settings.ini");
    return path.isEmpty() ? QString()
                          : QSettings(path, QSettings::IniFormat).value("Settings/gtk-icon-theme-name").toString();
}

// "hicolor" is the last resort of all themes and has no icons of documents.
bool hasTheme()
{
    const auto name = QIcon::themeName();
    return !name.isEmpty() && name != "hicolor";
}

void chooseTheme()
{
    if (hasTheme())
        return;
    if (const auto name = themeNameOfSettingsFile(); !name.isEmpty())
        QIcon::setThemeName(name);
}

// Whether a theme's picture fills the size well enough; themes of bitmaps may end at a small one.
bool isLargeEnough(QSize picture, QSize wanted)
{
    return longerSide(picture) * 4 >= longerSide(wanted) * 3;
}

// What a theme that knows none of an item's names calls its kind. Libraries, packages and links are this program's.
QString themeNameOfKind(const QString& kind)
{
    if (kind == "folder")
        return kind;
    return kind == "file" ? "text-x-generic" : QString();
}

} // namespace

IconProvider::IconProvider() : QQuickImageProvider(QQuickImageProvider::Pixmap), found_(kKeptBytes)
{
    chooseTheme();
}

QPixmap IconProvider::requestPixmap(const QString& id, QSize* size, const QSize& requestedSize)
{
    const auto pixels = pixelSize(requestedSize, kUsualSide);
    const auto key = QString("%1 %2x%3").arg(id).arg(pixels.width()).arg(pixels.height());
    QPixmap pixmap;
    if (const auto* kept = found_.object(key)) {
        pixmap = *kept;
    } else {
        const auto decoded = QUrl::fromPercentEncoding(id.toUtf8());
        pixmap = find(decoded.section('?', 0, 0).split('|', Qt::SkipEmptyParts), decoded.section('?', 1), pixels);
        found_.insert(key, new QPixmap(pixmap), pixmap.width() * pixmap.height() * 4);
    }
    *size = pixmap.size();
    return pixmap;
}

QPixmap IconProvider::find(const QStringList& names, const QString& kind, QSize pixels)
{
    if (const auto pixmap = fromTheme(names, kind, pixels); !pixmap.isNull())
        return pixmap;
    return QPixmap::fromImage(svgPicture(ownIconPath(names, kind), pixels));
}

QPixmap IconProvider::fromTheme(const QStringList& names, const QString& kind, QSize pixels)
{
    if (!themeCounts(pixels))
        return {};
    for (const auto& name : names + QStringList(themeNameOfKind(kind))) {
        if (!name.isEmpty() && !name.endsWith("-symbolic") && themeHas(name, pixels))
            return QIcon::fromTheme(name).pixmap(pixels, 1.0);
    }
    return {};
}

bool IconProvider::themeCounts(QSize pixels)
{
    const int side = longerSide(pixels);
    const auto known = themeCounts_.constFind(side);
    if (known != themeCounts_.constEnd())
        return *known;
    const bool counts = hasTheme() && themeHas("folder", pixels) && themeHas("text-x-generic", pixels);
    themeCounts_.insert(side, counts);
    return counts;
}

bool IconProvider::themeHas(const QString& name, QSize pixels)
{
    auto known = themeNames_.find(name);
    if (known == themeNames_.end())
        known = themeNames_.insert(name, QIcon::hasThemeIcon(name));
    return *known && isLargeEnough(QIcon::fromTheme(name).actualSize(pixels), pixels);
}

} // namespace tessel::qt
