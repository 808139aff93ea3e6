#include "platform/qt/thumbnails/DocumentPictures.h"

#include <QColorSpace>
#include <QImageReader>

namespace tessel::qt {

namespace {

constexpr qint64 kMostBytes = 200LL * 1024 * 1024;
constexpr qint64 kMostPixels = 100'000'000;

bool isTooLarge(QSize size)
{
    return qint64(size.width()) * size.height() > kMostPixels;
}

QImage fitted(const QImage& image, int side)
{
    if (image.width() <= side && image.height() <= side)
        return image;
    return image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

} // namespace

QImage pictureOfImage(QIODevice& document, const QByteArray& format, int side)
{
    QImageReader reader(&document, format);
    reader.setAutoTransform(true);
    const auto size = reader.size();
    if (document.size() > kMostBytes || isTooLarge(size))
        return {};
    if (size.isValid() && (size.width() > side || size.height() > side))
        reader.setScaledSize(size.scaled(side, side, Qt::KeepAspectRatio).expandedTo({1, 1}));
    auto image = reader.read();
    if (image.colorSpace().isValid())
        image.convertToColorSpace(QColorSpace(QColorSpace::SRgb));
    return image.isNull() ? image : fitted(image, side);
}

} // namespace tessel::qt
