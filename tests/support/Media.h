#pragma once

#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

namespace tessel::media {

/// A number of so many bytes, the lowest first.
inline std::string little(std::uint64_t number, int bytes)
{
    std::string result;
    for (int byte = 0; byte < bytes; ++byte)
        result += static_cast<char>(number >> (8 * byte) & 0xFFU);
    return result;
}

inline std::string chunk(std::string_view name, const std::string& content)
{
    return std::string(name) + little(content.size(), 4) + content + std::string(content.size() % 2, '\0');
}

/// A tone, as a WAV file.
inline std::string tone(double seconds)
{
    constexpr int kRate = 8000;
    std::string samples;
    for (int sample = 0; sample < static_cast<int>(seconds * kRate); ++sample)
        samples += little(static_cast<std::uint64_t>(static_cast<std::int64_t>(8000 * std::sin(sample / 5.0))), 2);
    const auto format =
        little(1, 2) + little(1, 2) + little(kRate, 4) + little(2 * kRate, 4) + little(2, 2) + little(16, 2);
    return chunk("RIFF", "WAVE" + chunk("fmt ", format) + chunk("data", samples));
}

/// A silent film of ten pictures a second, as an AVI file with uncompressed pictures. Columns are all of one colour,
/// from red 0 on the left to nearly 255 on the right; blue is how many tenths of a second have passed.
inline std::string film(int frames, int width, int height)
{
    const int rowBytes = (width * 3 + 3) / 4 * 4;
    const auto size = static_cast<std::uint64_t>(rowBytes) * static_cast<std::uint64_t>(height);
    const auto number = [](int value) { return little(static_cast<std::uint64_t>(value), 4); };
    std::string pictures;
    std::string index;
    for (int frame = 0; frame < frames; ++frame) {
        std::string row;
        for (int x = 0; x < width; ++x)
            row += {static_cast<char>(frame), '\x40', static_cast<char>(x * 255 / width)};
        row.resize(static_cast<std::size_t>(rowBytes));
        std::string picture;
        for (int y = 0; y < height; ++y)
            picture += row;
        index += "00db" + little(16, 4) + little(4 + pictures.size(), 4) + little(size, 4);
        pictures += chunk("00db", picture);
    }
    const auto main = number(100'000) + little(size * 10, 4) + number(0) + number(16) + number(frames) + number(0) +
                      number(1) + little(size, 4) + number(width) + number(height) + std::string(16, '\0');
    const auto stream = "vidsDIB " + std::string(12, '\0') + number(1) + number(10) + number(0) + number(frames) +
                        little(size, 4) + little(0xFFFFFFFF, 4) + number(0) + number(0) +
                        little(static_cast<std::uint64_t>(width), 2) + little(static_cast<std::uint64_t>(height), 2);
    const auto format = number(40) + number(width) + number(height) + little(1, 2) + little(24, 2) + number(0) +
                        little(size, 4) + std::string(16, '\0');
    const auto list = [](std::string_view name, const std::string& content) {
        return chunk("LIST", std::string(name) + content);
    };
    const auto header = list("hdrl", chunk("avih", main) + list("strl", chunk("strh", stream) + chunk("strf", format)));
    return chunk("RIFF", "AVI " + header + list("movi", pictures) + chunk("idx1", index));
}

} // namespace tessel::media
