#include "tests/platform/decoding/corpus/Seeds.h"

#include "tests/platform/decoding/Documents.h"

#include <QBuffer>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QtEndian>

#include <array>

namespace tessel::corpus {

namespace {

using documents::pdf;
using documents::svg;
using namespace std::string_literals;

QImage picture()
{
    QImage image(160, 90, QImage::Format_ARGB32);
    QPainter painter(&image);
    QLinearGradient colors(0, 0, 160, 90);
    colors.setColorAt(0, QColor(250, 60, 20, 200));
    colors.setColorAt(1, QColor(10, 90, 240));
    painter.fillRect(image.rect(), colors);
    painter.drawEllipse(20, 10, 90, 60);
    return image;
}

std::string encoded(const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    return picture().save(&buffer, format) ? bytes.toStdString() : std::string();
}

std::string deflated(const std::string& content)
{
    constexpr int kLengthBytes = 4; // which Qt puts before the stream
    const auto stream = qCompress(reinterpret_cast<const uchar*>(content.data()), qsizetype(content.size()), 9);
    return stream.mid(kLengthBytes).toStdString();
}

template <typename Number>
std::string bigEndian(Number number)
{
    std::string bytes(sizeof number, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

std::uint32_t checksum(const std::string& bytes)
{
    std::uint32_t sum = 0xFFFFFFFF;
    for (const char byte : bytes) {
        sum ^= static_cast<std::uint8_t>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1U) ^ ((sum & 1U) != 0 ? 0xEDB88320 : 0);
    }
    return ~sum;
}

std::string chunk(const std::string& content)
{
    return bigEndian(static_cast<std::uint32_t>(content.size() - 4)) + content + bigEndian(checksum(content));
}

/// A PNG of one grey, eight bits a pixel.
std::string png(std::uint32_t width, std::uint32_t height, std::size_t zeros)
{
    return "\x89PNG\r\n\x1a\n" + chunk("IHDR" + bigEndian(width) + bigEndian(height) + "\x08\0\0\0\0"s) +
           chunk("IDAT" + deflated(std::string(zeros, '\0'))) + chunk("IEND");
}

/// A page whose content is compressed so many times over.
std::string pdfWithin(int times, std::size_t spaces)
{
    auto content = std::string(spaces, ' ');
    std::string filters;
    for (int time = 0; time < times; ++time) {
        content = deflated(content);
        filters += "/FlateDecode";
    }
    return "%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n2 0 obj<</Type/Pages/Kids[4 0 R]/Count 1>>endobj\n"
           "3 0 obj<</Length " +
           std::to_string(content.size()) + "/Filter[" + filters + "]>>stream\n" + content +
           "\nendstream endobj\n4 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 300 600]/Contents 3 0 R>>endobj\n"
           "trailer<</Root 1 0 R>>\n";
}

std::string replaced(std::string text, std::string_view what, std::string_view with)
{
    if (const auto at = text.find(what); at != std::string::npos)
        text.replace(at, what.size(), with);
    return text;
}

std::string laughs()
{
    std::string entities = "<!ENTITY a0 'haha'>";
    for (int level = 1; level < 12; ++level) {
        entities += "<!ENTITY a" + std::to_string(level) + " '";
        for (int time = 0; time < 10; ++time)
            entities += "&a" + std::to_string(level - 1) + ";";
        entities += "'>";
    }
    return "<?xml version='1.0'?><!DOCTYPE svg [" + entities + "]>" + svg("<text y='20'>&a11;</text>");
}

std::string repeated(std::string_view text, int times)
{
    std::string result;
    for (int time = 0; time < times; ++time)
        result += text;
    return result;
}

std::vector<Seed> soundOnes()
{
    std::vector<Seed> result = {
        {"a.gif", documents::gif()},
        {"a.pdf", pdf(3)},
        {"packed.pdf", pdfWithin(1, 1000)},
        {"a.svg", svg("<rect width='100' height='100' fill='#f00'/><text x='9' y='50'>Text</text>"
                      "<path d='M10 10 C 20 20 40 20 50 10 A 30 50 0 0 1 162 55' stroke='blue'/>")},
    };
    for (const auto* format : {"jpg", "png", "webp", "bmp", "tiff"})
        if (auto content = encoded(format); !content.empty())
            result.push_back({"a."s + format, std::move(content)});
    return result;
}

std::vector<Seed> hostileDrawings()
{
    return {
        {"laughs.svg", laughs(), false},
        {"within itself.svg", svg("<g id='a'><use xlink:href='#a'/></g><use xlink:href='#a'/>"), false},
        {"two.svg", svg("<g id='a'><use xlink:href='#b'/></g><g id='b'><use xlink:href='#a'/></g>"), false},
        {"gradient.svg", svg("<linearGradient id='g' xlink:href='#g'/><rect width='9' height='9' fill='url(#g)'/>"),
         false},
        {"deep.svg", svg(repeated("<g>", 15'000) + repeated("</g>", 15'000)), false},
        {"wide.svg", replaced(svg("<g/>"), "200", "1e300"), false},
        {"dashes.svg", svg("<path d='M0 0 H 1e9' stroke='red' stroke-dasharray='0.0001'/>"), false},
        {"outside.svg", svg("<image width='9' height='9' xlink:href='/dev/zero'/>"), false},
    };
}

std::vector<Seed> hostileOnes()
{
    constexpr std::size_t kMany = 64U << 20U;
    return {
        {"empty.jpg", "", false},
        {"empty.pdf", "", false},
        {"a.txt", "A text, which no process reads.\n", false},
        {"a.zip", "PK\3\4\x14\0\0\0\x08\0"s + std::string(60, 'z') + "PK\5\6" + std::string(18, '\0'), false},
        {"huge.png", png(60'000, 60'000, kMany), false},
        {"bomb.png", png(10'000, 6'000, 60'006'000), false},
        {"huge.gif", replaced(documents::gif(), "GIF89a\2\0\2\0"s, "GIF89a\xff\xff\xff\xff"s), false},
        {"nested.pdf", pdfWithin(4, kMany), false},
        {"circle.pdf", replaced(pdf(), "Kids[4 0 R", "Kids[2 0 R"), false},
        {"huge.pdf", replaced(pdf(), "300 600", "1e30 1e30"), false},
        {"line.pdf", replaced(pdf(), "300 600", "1000000 0.001"), false},
        {"count.pdf", replaced(pdf(), "/Count 1", "/Count 2000000000"), false},
    };
}

} // namespace

std::vector<Seed> seeds()
{
    auto result = soundOnes();
    for (auto& more : {hostileDrawings(), hostileOnes()})
        result.insert(result.end(), more.begin(), more.end());
    return result;
}

} // namespace tessel::corpus
