#include "platform/qt/thumbnails/ThumbnailPNG.h"

#include <QBuffer>
#include <QtEndian>

#include <cstdint>

namespace tessel::qt {

namespace {

constexpr qsizetype kEndOfHeader = 33; // bytes: the signature and the first chunk, which has a fixed length

// The CRC-32 of ISO 3309, as PNG has it.
std::uint32_t checksum(const QByteArray& bytes)
{
    std::uint32_t sum = 0xFFFFFFFF;
    for (const char byte : bytes) {
        sum ^= static_cast<std::uint8_t>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1U) ^ ((sum & 1U) != 0 ? 0xEDB88320 : 0);
    }
    return ~sum;
}

QByteArray bigEndian(std::uint32_t number)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

QByteArray textChunk(const QByteArray& keyword, const QByteArray& value)
{
    const auto content = "tEXt" + keyword + '\0' + value;
    return bigEndian(static_cast<std::uint32_t>(content.size() - 4)) + content + bigEndian(checksum(content));
}

// Without the texts and the other notes of an image, which would be written as well.
QImage bare(const QImage& image)
{
    const auto plain = image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    return QImage(plain.constBits(), plain.width(), plain.height(), plain.bytesPerLine(), plain.format()).copy();
}

} // namespace

QByteArray thumbnailPNG(const QImage& image, const QList<std::pair<QByteArray, QByteArray>>& texts)
{
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    if (!bare(image).save(&buffer, "png"))
        return {};
    QByteArray chunks;
    for (const auto& [keyword, value] : texts)
        chunks += textChunk(keyword, value);
    return file.insert(kEndOfHeader, chunks);
}

} // namespace tessel::qt
