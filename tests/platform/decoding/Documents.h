#pragma once

#include <string>
#include <string_view>

namespace tessel::documents {

/// A drawing of 200 by 100.
inline std::string svg(const std::string& content)
{
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='200' "
           "height='100'>" +
           content + "</svg>";
}

/// Pages of 300 by 600 points with a red upper half.
inline std::string pdf(int pages = 1, std::string_view trailer = {})
{
    std::string kids;
    std::string objects;
    for (int page = 0; page < pages; ++page) {
        const auto number = std::to_string(page + 4);
        kids += number + " 0 R ";
        objects += number + " 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 300 600]/Contents 3 0 R>>endobj\n";
    }
    return "%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n2 0 obj<</Type/Pages/Kids[" + kids + "]/Count " +
           std::to_string(pages) +
           ">>endobj\n3 0 obj<</Length 30>>stream\n1 0 0 rg 0 300 300 300 re f   \nendstream endobj\n" + objects +
           "trailer<</Root 1 0 R" + std::string(trailer) + ">>\n";
}

/// Two frames of 2 by 2 pixels, the first red for 0.2 seconds, the second blue for 0.5.
inline std::string gif()
{
    const auto frame = [](char delay, std::string_view pixels) {
        return std::string("\x21\xf9\x04\0", 4) + delay + std::string("\0\0\0", 3) +
               std::string("\x2c\0\0\0\0\x02\0\x02\0\0\x02\x03", 12) + std::string(pixels) + '\0';
    };
    return std::string("GIF89a\x02\0\x02\0\x91\0\0", 13) + std::string("\xff\0\0\0\0\xff\0\0\0\0\0\0", 12) +
           frame('\x14', {"\x04\0\x05", 3}) + frame('\x32', "\x4c\x12\x05") + '\x3b';
}

} // namespace tessel::documents
