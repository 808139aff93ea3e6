#pragma once

#include "platform/qt/thumbnails/ThumbnailOriginal.h"
#include "platform/qt/thumbnails/ThumbnailSize.h"

#include <QByteArray>
#include <QImage>

namespace tessel::qt {

/// The thumbnails that all programs of the desktop share (Thumbnail Managing Standard, freedesktop): PNG files named
/// after the MD5 of the original's address, valid as long as the address, the time of the last change and the size
/// that they note are the original's. Safe to use from any thread, and beside other programs: a file appears whole.
class ThumbnailCache {
public:
    /// @param folder made, readable by the user alone, with the first thumbnail
    /// @param program name and version: this program's marks of failure lie in a folder of this name
    ThumbnailCache(QByteArray folder, QByteArray program);

    /// "thumbnails" in $XDG_CACHE_HOME, or ".cache" in the user's own folder.
    [[nodiscard]] static QByteArray desktopFolder();

    /// Whether a file lies in the cache itself, which holds no originals.
    [[nodiscard]] bool contains(const QByteArray& path) const;

    /// The smallest valid thumbnail that is stored for this size or a larger one; else a null image.
    [[nodiscard]] QImage find(const ThumbnailOriginal&, ThumbnailSize) const;
    /// Whether this program tried to make one in vain since the original's last change.
    [[nodiscard]] bool hasFailed(const ThumbnailOriginal&) const;

    /// @returns whether it is stored; nothing is left behind when it is not
    bool save(const ThumbnailOriginal&, ThumbnailSize, const QImage&) const;
    bool markFailed(const ThumbnailOriginal&) const;

private:
    [[nodiscard]] bool store(const QByteArray& folder, const ThumbnailOriginal&, const QImage&) const;

    const QByteArray folder_;
    const QByteArray program_;
};

} // namespace tessel::qt
