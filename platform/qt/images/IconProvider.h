#pragma once

#include <QCache>
#include <QHash>
#include <QQuickImageProvider>
#include <QStringList>

namespace tessel::qt {

/// Icons of items: "image://icon/<names, separated by '|', the best one first>?<kind>", where the names are those of
/// the Icon Naming Specification (freedesktop) and the kind is "file", "folder", "package", "link" or "library".
///
/// The icon is that of the desktop's theme; the program's own set stands in for a theme that lacks an icon, and
/// wholly for one that does not have the commonest icons in the size, so that a list never mixes two looks by chance.
/// An icon fills the requested size, 48 pixels when none is requested. Main thread only.
class IconProvider final : public QQuickImageProvider {
public:
    IconProvider();

    QPixmap requestPixmap(const QString& id, QSize* size, const QSize& requestedSize) override;

private:
    [[nodiscard]] QPixmap find(const QStringList& names, const QString& kind, QSize);
    [[nodiscard]] QPixmap fromTheme(const QStringList& names, const QString& kind, QSize);
    [[nodiscard]] bool themeCounts(QSize);
    [[nodiscard]] bool themeHas(const QString& name, QSize);

    QCache<QString, QPixmap> found_;  ///< By identifier and size; its cost is counted in bytes.
    QHash<int, bool> themeCounts_;    ///< By the longer side in pixels.
    QHash<QString, bool> themeNames_; ///< Names asked for; to look for one in vain takes milliseconds.
};

} // namespace tessel::qt
