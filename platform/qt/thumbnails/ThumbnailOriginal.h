#pragma once

#include <QByteArray>
#include <QFile>

#include <cstdint>
#include <memory>
#include <optional>

namespace tessel::qt {

/// A regular file as it was at one moment: what a thumbnail of it is known by.
struct ThumbnailOriginal {
    QByteArray path;                   ///< absolute; bytes as the kernel has them
    std::int64_t modificationTime = 0; ///< nanoseconds since 1970
    std::int64_t size = 0;             ///< bytes

    /// None when there is no regular file of this name, or it is empty. Links are followed. Does not open it.
    [[nodiscard]] static std::optional<ThumbnailOriginal> at(const QByteArray& path);

    /// Its address, escaped as GLib does it, so that all programs of the desktop find the same thumbnail.
    [[nodiscard]] QByteArray uri() const;
    [[nodiscard]] std::int64_t modificationSeconds() const;

    /// Opens it for reading; null when it cannot be opened, or is another file by now.
    [[nodiscard]] std::unique_ptr<QFile> open() const;
    /// Whether it still is what it was.
    [[nodiscard]] bool isUnchanged() const;
};

} // namespace tessel::qt
