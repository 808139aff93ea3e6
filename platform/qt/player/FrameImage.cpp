#include "platform/qt/player/FrameImage.h"

#include <QVideoFrameFormat>

#include <cstdlib>
#include <cstring>

namespace tessel::qt {

namespace {

/// Qt 6.4 hands out pixels that it does not know as they come from their decoder, and says that they have 32 bits.
/// Those of 24 bits are the films' own.
QImage::Format formatOf(const QVideoFrame& frame)
{
    const auto rowBytes = std::abs(frame.bytesPerLine(0));
    return rowBytes >= 4 * frame.width()   ? QVideoFrameFormat::imageFormatFromPixelFormat(frame.pixelFormat())
           : rowBytes >= 3 * frame.width() ? QImage::Format_BGR888
                                           : QImage::Format_Invalid;
}

/// Rows may lie in memory from the last to the first.
QImage copied(const QVideoFrame& frame)
{
    const auto format = formatOf(frame);
    if (format == QImage::Format_Invalid)
        return {};
    QImage image(frame.size(), format);
    if (image.isNull())
        return {};
    const auto rowBytes = static_cast<std::size_t>(image.width()) * static_cast<std::size_t>(image.depth()) / 8;
    for (int row = 0; row < image.height(); ++row)
        std::memcpy(image.scanLine(row), frame.bits(0) + std::ptrdiff_t(row) * frame.bytesPerLine(0), rowBytes);
    return image;
}

} // namespace

QImage imageOf(QVideoFrame frame)
{
    const bool isImage = QVideoFrameFormat::imageFormatFromPixelFormat(frame.pixelFormat()) != QImage::Format_Invalid;
    if (!isImage)
        return frame.toImage();
    if (!frame.map(QVideoFrame::ReadOnly))
        return {};
    auto image = copied(frame);
    frame.unmap();
    return image;
}

} // namespace tessel::qt
