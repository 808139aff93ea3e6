#pragma once

#include "platform/documents/DocumentDecoder.h"

#include <array>
#include <cstdint>

namespace tessel {

/// What this program and the one that reads documents say to each other, over a socket that keeps messages apart. Both
/// are built together, so the bytes are those of the structs.

/// The decoder's end of the socket.
inline constexpr int kDecoderSocket = 3;

/// No picture has more pixels.
inline constexpr std::int64_t kMostPaintedPixels = 64'000'000;

/// How the decoder ends when there is no memory left below its limit.
inline constexpr int kDecoderIsOutOfMemory = 86;

/// Comes with the document, open for reading.
struct DecoderRequest {
    enum class Work : std::uint32_t { Inspect, Paint };

    Work work = Work::Inspect;
    std::int32_t index = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    Rect part = {0, 0, 1, 1};
    std::array<char, 256> name = {}; ///< the file's, ends with NUL
};

/// The answer to each request, and once, with nothing in it, when the decoder is ready. A picture comes as a file in
/// memory that nobody can change or cut any more.
struct DecoderAnswer {
    ContentKind kind = ContentKind::None;
    std::int32_t problem = 0; ///< 0 for none, else the ContentProblem and 1
    Size size;
    std::int32_t count = 0;
    std::int32_t width = 0; ///< of the picture; its rows have no gaps
    std::int32_t height = 0;
    std::int32_t milliseconds = 0;
    std::int32_t isOpaque = 0; ///< 1 when it is
};

} // namespace tessel
