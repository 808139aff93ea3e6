#include "platform/qt/images/SymbolProvider.h"

#include "platform/qt/images/SvgPicture.h"

#include <QColor>
#include <QPainter>
#include <QPixmap>

namespace tessel::qt {

namespace {

constexpr int kUsualSide = 24;         // pixels
constexpr int kKeptBytes = 512 * 1024; // some hundred symbols on a dense screen

QImage tinted(QImage symbol, const QColor& color)
{
    if (symbol.isNull())
        return symbol;
    QPainter painter(&symbol);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(symbol.rect(), color);
    return symbol;
}

QPixmap drawnSymbol(const QString& id, QSize pixels)
{
    const auto path = ":/tessel/symbols/" + id.section('?', 0, 0) + ".svg";
    return QPixmap::fromImage(tinted(svgPicture(path, pixels), QColor("#" + id.section('?', 1))));
}

} // namespace

SymbolProvider::SymbolProvider() : QQuickImageProvider(QQuickImageProvider::Pixmap), drawn_(kKeptBytes)
{
}

QPixmap SymbolProvider::requestPixmap(const QString& id, QSize* size, const QSize& requestedSize)
{
    const auto pixels = pixelSize(requestedSize, kUsualSide);
    const auto key = QString("%1 %2x%3").arg(id).arg(pixels.width()).arg(pixels.height());
    QPixmap pixmap;
    if (const auto* kept = drawn_.object(key)) {
        pixmap = *kept;
    } else {
        pixmap = drawnSymbol(id, pixels);
        drawn_.insert(key, new QPixmap(pixmap), pixels.width() * pixels.height() * 4);
    }
    *size = pixmap.size();
    return pixmap;
}

} // namespace tessel::qt
