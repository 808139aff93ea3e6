#include "platform/qt/decoder/OpenDocument.h"

#include "platform/linux/decoding/DecoderMessages.h"
#include "platform/qt/decoder/DrawingDocument.h"
#include "platform/qt/decoder/ImageDocument.h"
#include "platform/qt/decoder/MediaDocument.h"
#include "platform/qt/decoder/PagesDocument.h"
#include "platform/qt/decoder/Plugins.h"
#include "platform/qt/decoder/TextDocument.h"

#include <QImageReader>
#include <QMimeDatabase>
#include <QMimeType>

namespace tessel::qt {

namespace {

constexpr qint64 kHeadBytes = 8 * 1024;

// What the content shows to be an image or a PDF document is one, whatever its name.
QMimeType typeOf(const QByteArray& head, const QString& name)
{
    const QMimeDatabase database;
    auto type = database.mimeTypeForData(head);
    if (type.name().startsWith("image/") || type.inherits("application/pdf"))
        return type;
    return database.mimeTypeForFileNameAndData(name, head);
}

// None for those whose readers draw documents, or are hardly used.
QByteArray knownFormat(const QByteArray& type)
{
    const auto formats = QImageReader::imageFormatsForMimeType(type);
    for (const auto& format : formats) {
        if (format != "svg" && format != "svgz" && format != "pdf" && format != "mng")
            return format;
    }
    return {};
}

// The image format that reads a type.
QByteArray imageFormat(const QMimeType& type)
{
    const auto name = type.name().toLatin1();
    if (!name.startsWith("image/"))
        return {};
    if (auto format = knownFormat(name); !format.isEmpty())
        return format;
    findAllPlugins();
    return knownFormat(name);
}

} // namespace

std::unique_ptr<OpenDocument> openDocument(std::unique_ptr<QFile> file, const QString& name)
{
    const auto head = file->peek(kHeadBytes);
    const auto type = typeOf(head, name);
    if (type.inherits("image/svg+xml")) {
        needFonts();
        return std::make_unique<DrawingDocument>(*file);
    }
    if (const auto format = imageFormat(type); !format.isEmpty())
        return std::make_unique<ImageDocument>(std::move(file), format);
    if (type.inherits("application/pdf")) {
        needFonts();
        return std::make_unique<PagesDocument>(std::move(file));
    }
    if (type.inherits("text/plain") && !head.contains('\0'))
        return std::make_unique<TextDocument>();
    if (type.name().startsWith("audio/"))
        return std::make_unique<MediaDocument>(ContentKind::Audio);
    if (type.name().startsWith("video/"))
        return std::make_unique<MediaDocument>(ContentKind::Video);
    return nullptr;
}

QRect partOf(QSize whole, const QRectF& part)
{
    const QRectF all(0, 0, 1, 1);
    const auto inside = part.intersected(all);
    const QRect pixels = QRectF(inside.x() * whole.width(), inside.y() * whole.height(), inside.width() * whole.width(),
                                inside.height() * whole.height())
                             .toAlignedRect()
                             .intersected(QRect(QPoint(), whole));
    return pixels.isEmpty() ? QRect(0, 0, 1, 1) : pixels;
}

bool isTooMuchToPaint(QSize pixels)
{
    return qint64(pixels.width()) * pixels.height() > kMostPaintedPixels;
}

} // namespace tessel::qt
