#include "platform/qt/views/ImageSources.h"

#include "platform/qt/views/Colors.h"
#include "platform/qt/views/PainterCanvas.h"

#include <QByteArray>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPainter>

#include <map>
#include <mutex>

namespace tessel::qt {

namespace {

/// The drawings that have a number, as long as somebody holds them. Asked from whichever thread loads images.
class Drawings {
public:
    static Drawings& shared()
    {
        static Drawings drawings;
        return drawings;
    }

    quint64 numberOf(const std::shared_ptr<const DisplayList>& drawing)
    {
        const std::lock_guard lock(mutex_);
        for (const auto& [number, known] : drawings_)
            if (!known.owner_before(drawing) && !drawing.owner_before(known))
                return number;
        std::erase_if(drawings_, [](const auto& entry) { return entry.second.expired(); });
        drawings_.emplace(++last_, drawing);
        return last_;
    }
    std::shared_ptr<const DisplayList> find(quint64 number)
    {
        const std::lock_guard lock(mutex_);
        const auto found = drawings_.find(number);
        return found == drawings_.end() ? nullptr : found->second.lock();
    }

private:
    std::mutex mutex_;
    std::map<quint64, std::weak_ptr<const DisplayList>> drawings_;
    quint64 last_ = 0;
};

/// "image://drawn/<number>/<width>/<height>/<appearance>", in points.
QString drawnSource(const Image& image, bool dark)
{
    const auto number = Drawings::shared().numberOf(image.drawing());
    return QStringLiteral("image://drawn/%1/%2/%3/%4")
        .arg(number)
        .arg(image.size().width)
        .arg(image.size().height)
        .arg(dark ? "dark" : "light");
}

QString symbolSource(const std::string& name, bool dark)
{
    const auto color = adaptedColor(Color::black(), dark).name().mid(1);
    return QStringLiteral("image://symbol/%1?%2").arg(QString::fromStdString(name), color);
}

QString iconSource(const std::string& names)
{
    return QStringLiteral("image://icon/") + QString::fromStdString(names).replace(' ', '|') + QStringLiteral("?file");
}

/// Of a document that may be hostile: others decode it. The time makes a changed file another picture.
QString fileSource(const std::string& path)
{
    const auto time = QFileInfo(QFile::decodeName(path.c_str())).lastModified().toMSecsSinceEpoch();
    return QStringLiteral("image://thumbnail/") + percentEncoded(path) + u'?' + QString::number(time);
}

} // namespace

QString percentEncoded(std::string_view bytes)
{
    const QByteArray raw(bytes.data(), static_cast<qsizetype>(bytes.size()));
    return QString::fromLatin1(raw.toPercentEncoding("/"));
}

QString imageSource(const std::optional<Image>& image, bool dark)
{
    if (!image)
        return {};
    switch (image->kind()) {
    case Image::Kind::Symbol:
        return symbolSource(image->name(), dark);
    case Image::Kind::Icon:
        return iconSource(image->name());
    case Image::Kind::File:
        return fileSource(image->url()->path());
    case Image::Kind::Drawn:
        return image->drawing() ? drawnSource(*image, dark) : QString();
    }
    return {};
}

QImage DrawnImageProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize)
{
    const auto parts = id.split('/');
    const auto drawing = parts.size() == 4 ? Drawings::shared().find(parts[0].toULongLong()) : nullptr;
    if (!drawing)
        return {};
    const QSizeF points(parts[1].toDouble(), parts[2].toDouble());
    const auto pixels = requestedSize.isValid() ? requestedSize : (points * qGuiApp->devicePixelRatio()).toSize();
    QImage picture(pixels.expandedTo({1, 1}), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.scale(picture.width() / points.width(), picture.height() / points.height());
    PainterCanvas canvas(painter, parts[3] == QStringLiteral("dark"));
    drawing->drawOn(canvas);
    *size = picture.size();
    return picture;
}

} // namespace tessel::qt
