#include "platform/qt/images/SvgPicture.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>

namespace tessel::qt {

QSize pixelSize(QSize requested, int otherwise)
{
    constexpr int kLongestSide = 1024;
    const int longest = std::max(requested.width(), requested.height());
    const auto side = [&](int length) {
        return std::min(length > 0 ? length : longest > 0 ? longest : otherwise, kLongestSide);
    };
    return {side(requested.width()), side(requested.height())};
}

QImage svgPicture(const QString& path, QSize pixels)
{
    if (!QFile::exists(path))
        return {};
    QSvgRenderer renderer(path);
    if (!renderer.isValid())
        return {};
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    renderer.render(&painter, QRectF(QPointF(), QSizeF(pixels)));
    return image;
}

} // namespace tessel::qt
