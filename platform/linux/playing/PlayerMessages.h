#pragma once

#include "platform/linux/decoding/DecoderMessages.h"

#include <cstdint>

namespace tessel {

/// What this program and the one that plays documents say to each other, in the manner of the decoder's messages.

/// The player's end of the socket.
inline constexpr int kPlayerSocket = kDecoderSocket;

struct PlayerOrder {
    enum class Work : std::uint32_t {
        Open, ///< the document comes with it, open for reading; once
        Play,
        Pause,
        Seek,           ///< to `value`, in seconds
        Volume,         ///< `value`, from 0 to 1, as loud as it sounds
        LargestPicture, ///< `width` and `height`, in pixels
        NextPicture,    ///< the last picture is used up; no other comes before this
    };

    Work work = Work::Open;
    std::uint32_t number = 0; ///< counts the orders from 1
    double value = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
};

/// What the player tells: its state with every change of that and after every order, and pictures. The first comes
/// when it is ready for orders.
struct PlayerNote {
    std::uint32_t number = 0; ///< of the last order that was followed
    std::int32_t problem = 0; ///< 0 for none, else the ContentProblem and 1
    std::int32_t isOpen = 0;
    std::int32_t isPlaying = 0;
    std::int32_t hasEnded = 0;
    std::int32_t hasVideo = 0;
    std::int32_t isHeard = 0;
    double seconds = 0;
    double position = 0;
    std::int32_t width = 0; ///< of the picture that comes with it, whose rows have no gaps; 0 for none
    std::int32_t height = 0;
};

} // namespace tessel
