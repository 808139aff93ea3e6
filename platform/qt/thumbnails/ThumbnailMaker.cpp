#include "platform/qt/thumbnails/ThumbnailMaker.h"

#include "platform/qt/thumbnails/DocumentPictures.h"

#include <QImageReader>
#include <QMimeDatabase>
#include <QMimeType>

namespace tessel::qt {

namespace {

constexpr qint64 kHeadBytes = 8 * 1024;

// What the content shows to be an image or a PDF document is one, whatever its name; a text is known by its name.
QMimeType typeOf(const QByteArray& head, const QString& name)
{
    const QMimeDatabase database;
    auto type = database.mimeTypeForData(head);
    if (type.name().startsWith("image/") || type.inherits("application/pdf"))
        return type;
    return database.mimeTypeForFileNameAndData(name, head);
}

// The image format that reads a type; none for those whose readers draw documents, or are hardly used.
QByteArray imageFormat(const QMimeType& type)
{
    const auto formats = QImageReader::imageFormatsForMimeType(type.name().toLatin1());
    for (const auto& format : formats) {
        if (format != "svg" && format != "svgz" && format != "pdf" && format != "mng")
            return format;
    }
    return {};
}

bool isCode(const QMimeType& textType)
{
    return textType.name() != "text/plain" && textType.name() != "text/markdown";
}

} // namespace

MadeThumbnail makeThumbnail(QIODevice& document, const QString& name, ThumbnailSize size)
{
    using enum MadeThumbnail::Outcome;
    const auto head = document.peek(kHeadBytes);
    const auto type = typeOf(head, name);
    QImage image;
    if (type.inherits("image/svg+xml"))
        image = pictureOfDrawing(document, side(size));
    else if (const auto format = imageFormat(type); !format.isEmpty())
        image = pictureOfImage(document, format, side(size));
    else if (type.inherits("application/pdf"))
        image = pictureOfPDF(document, side(size));
    else if (type.inherits("text/plain"))
        image = pictureOfText(head, isCode(type), side(size));
    else
        return {NotSupported, {}, type.name()};
    return {image.isNull() ? Failed : Made, image, type.name()};
}

} // namespace tessel::qt
