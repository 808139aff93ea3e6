#include "platform/qt/thumbnails/ThumbnailOriginal.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessel::qt {

namespace {

constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

std::int64_t modificationTime(const struct stat& status)
{
    return status.st_mtim.tv_sec * kNanosecondsPerSecond + status.st_mtim.tv_nsec;
}

bool isSame(const ThumbnailOriginal& original, int descriptor)
{
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
           modificationTime(status) == original.modificationTime && status.st_size == original.size;
}

} // namespace

std::optional<ThumbnailOriginal> ThumbnailOriginal::at(const QByteArray& path)
{
    struct stat status = {};
    if (::stat(path.constData(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size == 0)
        return std::nullopt;
    return ThumbnailOriginal{path, tessel::qt::modificationTime(status), status.st_size};
}

QByteArray ThumbnailOriginal::uri() const
{
    return "file://" + path.toPercentEncoding("/!$&'()*+,:=@");
}

std::int64_t ThumbnailOriginal::modificationSeconds() const
{
    const auto seconds = modificationTime / kNanosecondsPerSecond;
    return modificationTime % kNanosecondsPerSecond < 0 ? seconds - 1 : seconds;
}

std::unique_ptr<QFile> ThumbnailOriginal::open() const
{
    const int descriptor = ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0)
        return nullptr;
    auto file = std::make_unique<QFile>();
    if (isSame(*this, descriptor) && file->open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return file;
    ::close(descriptor);
    return nullptr;
}

bool ThumbnailOriginal::isUnchanged() const
{
    const auto now = at(path);
    return now && now->modificationTime == modificationTime && now->size == size;
}

} // namespace tessel::qt
