#include "platform/qt/thumbnails/ThumbnailCache.h"

#include "platform/qt/thumbnails/ThumbnailPNG.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace tessel::qt {

namespace {

constexpr qint64 kMostBytes = 16LL * 1024 * 1024; // of a file; pixels of the largest size take 4 MB

QByteArray folderName(ThumbnailSize size)
{
    switch (size) {
    case ThumbnailSize::Normal:
        return "normal";
    case ThumbnailSize::Large:
        return "large";
    case ThumbnailSize::ExtraLarge:
        return "x-large";
    case ThumbnailSize::ExtraExtraLarge:
        return "xx-large";
    }
    return {};
}

QByteArray fileName(const ThumbnailOriginal& original)
{
    return QCryptographicHash::hash(original.uri(), QCryptographicHash::Md5).toHex() + ".png";
}

// Whether the stored picture is of this original as it is now. The size is not always noted.
bool isValid(const PNGTexts& texts, const ThumbnailOriginal& original)
{
    const auto text = [&](QByteArrayView keyword) {
        for (const auto& [name, value] : texts)
            if (name == keyword)
                return value;
        return QByteArray();
    };
    const auto size = text("Thumb::Size");
    return text("Thumb::URI") == original.uri() &&
           text("Thumb::MTime") == QByteArray::number(qint64(original.modificationSeconds())) &&
           (size.isEmpty() || size == QByteArray::number(qint64(original.size)));
}

// Opens a regular file for reading; the name may be any bytes.
bool openFile(QFile& file, const QByteArray& path)
{
    const int descriptor = ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    struct stat status = {};
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
        file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return true;
    ::close(descriptor);
    return false;
}

QImage readValid(const QByteArray& path, const ThumbnailOriginal& original)
{
    QFile file;
    if (!openFile(file, path))
        return {};
    const auto stored = readThumbnailPNG(file.read(kMostBytes), side(ThumbnailSize::ExtraExtraLarge));
    return stored && isValid(stored->texts, original) ? stored->image : QImage();
}

bool makeFolder(const QByteArray& path)
{
    constexpr mode_t kUserAlone = 0700;
    if (::mkdir(path.constData(), kUserAlone) == 0 || errno == EEXIST)
        return true;
    const auto parent = path.left(path.lastIndexOf('/'));
    return errno == ENOENT && !parent.isEmpty() && makeFolder(parent) &&
           (::mkdir(path.constData(), kUserAlone) == 0 || errno == EEXIST);
}

bool writeAll(int descriptor, const QByteArray& bytes)
{
    QFile file;
    const bool isWritten =
        file.open(descriptor, QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(bytes) == bytes.size();
    return ::close(descriptor) == 0 && isWritten;
}

// Makes or replaces a file that only the user can read. It need not survive a loss of power.
bool writeWhole(const QByteArray& folder, const QByteArray& name, const QByteArray& bytes)
{
    auto temporary = folder + "/.tesseldrive-XXXXXX";
    const int descriptor = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (descriptor < 0)
        return false;
    if (writeAll(descriptor, bytes) && std::rename(temporary.constData(), (folder + '/' + name).constData()) == 0)
        return true;
    ::unlink(temporary.constData());
    return false;
}

} // namespace

ThumbnailCache::ThumbnailCache(QByteArray folder, QByteArray program)
    : folder_(std::move(folder)), program_(std::move(program))
{
}

QByteArray ThumbnailCache::desktopFolder()
{
    const auto configured = qgetenv("XDG_CACHE_HOME");
    return (configured.startsWith('/') ? configured : QFile::encodeName(QDir::homePath()) + "/.cache") + "/thumbnails";
}

bool ThumbnailCache::contains(const QByteArray& path) const
{
    return path.startsWith(folder_ + '/');
}

QImage ThumbnailCache::find(const ThumbnailOriginal& original, ThumbnailSize size) const
{
    const auto name = fileName(original);
    for (const auto stored : kThumbnailSizes) {
        if (stored < size)
            continue;
        if (auto image = readValid(folder_ + '/' + folderName(stored) + '/' + name, original); !image.isNull())
            return image;
    }
    return {};
}

bool ThumbnailCache::hasFailed(const ThumbnailOriginal& original) const
{
    return !readValid(folder_ + "/fail/" + program_ + '/' + fileName(original), original).isNull();
}

bool ThumbnailCache::save(const ThumbnailOriginal& original, ThumbnailSize size, const QImage& image) const
{
    return store(folder_ + '/' + folderName(size), original, image);
}

bool ThumbnailCache::markFailed(const ThumbnailOriginal& original) const
{
    QImage nothing(1, 1, QImage::Format_ARGB32);
    nothing.fill(Qt::transparent);
    return store(folder_ + "/fail/" + program_, original, nothing);
}

bool ThumbnailCache::store(const QByteArray& folder, const ThumbnailOriginal& original, const QImage& image) const
{
    const PNGTexts texts = {{"Thumb::URI", original.uri()},
                            {"Thumb::MTime", QByteArray::number(qint64(original.modificationSeconds()))},
                            {"Thumb::Size", QByteArray::number(qint64(original.size))},
                            {"Software", program_}};
    const auto file = thumbnailPNG(image, texts);
    return !file.isEmpty() && makeFolder(folder) && writeWhole(folder, fileName(original), file);
}

} // namespace tessel::qt
