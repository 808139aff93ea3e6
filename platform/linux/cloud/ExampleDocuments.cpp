#include "platform/linux/cloud/ExampleDocuments.h"

#include <algorithm>
#include <cstdio>
#include <vector>

namespace tessel {

namespace {

constexpr int kWidth = 96;
constexpr int kHeight = 64;
constexpr int kHorizon = 40;
constexpr int kSunRadius = 9;

std::string escapedForPDF(std::string_view text)
{
    std::string escaped;
    for (const char character : text) {
        if (character == '(' || character == ')' || character == '\\')
            escaped.push_back('\\');
        escaped.push_back(character);
    }
    return escaped;
}

std::string pageContent(std::string_view lines)
{
    std::string content = "BT /F1 24 Tf 72 740 Td 20 TL";
    for (std::size_t start = 0; start < lines.size();) {
        const auto end = std::min(lines.find('\n', start), lines.size());
        content += " (" + escapedForPDF(lines.substr(start, end - start)) + ") Tj T*";
        content += start == 0 ? " T* /F1 12 Tf" : "";
        start = end + 1;
    }
    return content + " ET";
}

std::string bigEndian(std::uint32_t number)
{
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.push_back(static_cast<char>(number >> shift & 255U));
    return bytes;
}

std::string littleEndian16(std::size_t number)
{
    return {static_cast<char>(number & 255U), static_cast<char>(number >> 8 & 255U)};
}

// The checksum of PNG's chunks (ISO 3309, reflected polynomial).
std::uint32_t crc32(std::string_view bytes)
{
    std::uint32_t crc = ~0U;
    for (const char byte : bytes) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = crc >> 1 ^ (crc & 1U ? 0xedb88320U : 0U);
    }
    return ~crc;
}

// The checksum of a zlib stream (RFC 1950).
std::uint32_t adler32(std::string_view bytes)
{
    std::uint32_t low = 1;
    std::uint32_t high = 0;
    for (const char byte : bytes) {
        low = (low + static_cast<unsigned char>(byte)) % 65521;
        high = (high + low) % 65521;
    }
    return high << 16 | low;
}

// Stored, not compressed: one block (RFC 1951, section 3.2.4).
std::string zlibStream(std::string_view bytes)
{
    return "\x78\x01\x01" + littleEndian16(bytes.size()) + littleEndian16(~bytes.size()) + std::string(bytes) +
           bigEndian(adler32(bytes));
}

std::string chunk(const std::string& type, const std::string& content)
{
    return bigEndian(static_cast<std::uint32_t>(content.size())) + type + content + bigEndian(crc32(type + content));
}

PixelColor mixed(const PixelColor& from, const PixelColor& to, int part, int whole)
{
    PixelColor color{};
    for (std::size_t i = 0; i < color.size(); ++i)
        color[i] = static_cast<std::uint8_t>((from[i] * (whole - part) + to[i] * part) / whole);
    return color;
}

PixelColor pixel(const Landscape& landscape, int x, int y)
{
    // Two hills meet in the land's outline.
    const int outline = kHorizon + (x < kWidth / 2 ? (x - 24) * (x - 24) : (x - 74) * (x - 74)) / 96;
    if (y >= outline)
        return mixed(landscape.land, {0, 0, 0}, y - outline, 2 * kHeight);
    const int dx = x - landscape.sunX;
    const int dy = y - landscape.sunY;
    if (dx * dx + dy * dy <= kSunRadius * kSunRadius)
        return landscape.sun;
    return mixed(landscape.sky, landscape.horizon, y, kHeight);
}

} // namespace

std::string pdfDocument(std::string_view lines)
{
    const auto content = pageContent(lines);
    const std::vector<std::string> objects = {
        "<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] /Contents 4 0 R "
        "/Resources << /Font << /F1 5 0 R >> >> >>",
        "<< /Length " + std::to_string(content.size()) + " >>\nstream\n" + content + "\nendstream",
        "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>",
    };
    std::string document = "%PDF-1.4\n";
    std::string table = "0000000000 65535 f \n";
    for (std::size_t i = 0; i < objects.size(); ++i) {
        char entry[32];
        std::snprintf(entry, sizeof entry, "%010zu 00000 n \n", document.size());
        table += entry;
        document += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const auto count = std::to_string(objects.size() + 1);
    return document + "xref\n0 " + count + "\n" + table + "trailer\n<< /Size " + count +
           " /Root 1 0 R >>\nstartxref\n" + std::to_string(document.size()) + "\n%%EOF\n";
}

std::string pngPicture(const Landscape& landscape)
{
    std::string rows;
    for (int y = 0; y < kHeight; ++y) {
        rows.push_back(0); // no filter
        for (int x = 0; x < kWidth; ++x)
            for (const auto component : pixel(landscape, x, y))
                rows.push_back(static_cast<char>(component));
    }
    const std::string eightBitsRGB("\x08\x02\x00\x00\x00", 5);
    return "\x89PNG\r\n\x1a\n" + chunk("IHDR", bigEndian(kWidth) + bigEndian(kHeight) + eightBitsRGB) +
           chunk("IDAT", zlibStream(rows)) + chunk("IEND", "");
}

} // namespace tessel
