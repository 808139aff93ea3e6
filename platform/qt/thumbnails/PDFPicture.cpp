#include "platform/qt/thumbnails/DocumentPictures.h"

#include <QPainter>
#include <QPdfDocument>

namespace tessel::qt {

namespace {

constexpr qint64 kMostBytes = 200LL * 1024 * 1024;

// What a page does not paint is paper.
QImage onPaper(const QImage& page)
{
    QImage image(page.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.drawImage(0, 0, page);
    return image;
}

} // namespace

QImage pictureOfPDF(QIODevice& document, int side)
{
    if (document.size() > kMostBytes)
        return {};
    QPdfDocument pages;
    pages.load(&document);
    if (pages.status() != QPdfDocument::Status::Ready || pages.pageCount() < 1)
        return {};
    const auto points = pages.pagePointSize(0);
    if (points.isEmpty())
        return {};
    const auto pixels = points.scaled(side, side, Qt::KeepAspectRatio).toSize().expandedTo({1, 1});
    const auto page = pages.render(0, pixels);
    return page.isNull() ? page : onPaper(page);
}

} // namespace tessel::qt
