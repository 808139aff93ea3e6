#include "platform/qt/decoder/SharedPicture.h"

#include <fcntl.h>
#include <sys/mman.h>

#include <cstring>

namespace tessel::qt {

namespace {

// Rows are copied as they are converted: a whole converted copy would be one picture more.
void copyPixels(const QImage& image, uchar* pixels, std::size_t rowBytes)
{
    QImage target(pixels, image.width(), image.height(), qsizetype(rowBytes), QImage::Format_ARGB32_Premultiplied);
    constexpr int kRows = 64;
    for (int top = 0; top < image.height(); top += kRows) {
        const int count = std::min(kRows, image.height() - top);
        const QImage rows(image.constScanLine(top), image.width(), count, image.bytesPerLine(), image.format());
        const auto converted = rows.convertToFormat(QImage::Format_ARGB32_Premultiplied);
        for (int row = 0; row < count; ++row)
            std::memcpy(target.scanLine(top + row), converted.constScanLine(row), rowBytes);
    }
}

} // namespace

FileDescriptor sharedPicture(const QImage& picture)
{
    const bool hasColors = picture.format() > QImage::Format_Indexed8; // others need their table of colours
    const auto image = hasColors ? picture : picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const auto rowBytes = static_cast<std::size_t>(image.width()) * 4;
    const auto bytes = rowBytes * static_cast<std::size_t>(image.height());
    FileDescriptor file(::memfd_create("picture", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!file.isOpen() || ::ftruncate(file.get(), static_cast<off_t>(bytes)) != 0)
        return {};
    void* const pixels = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0);
    if (pixels == MAP_FAILED)
        return {};
    copyPixels(image, static_cast<uchar*>(pixels), rowBytes);
    ::munmap(pixels, bytes);
    if (::fcntl(file.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL) != 0)
        return {};
    return file;
}

} // namespace tessel::qt
