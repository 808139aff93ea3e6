#pragma once

#include "platform/documents/DocumentDecoder.h"

#include <functional>
#include <optional>

namespace tessel {

/// How far the sound or film of one document has come.
struct MediaState {
    bool isOpen = false; ///< what follows is known
    bool isPlaying = false;
    bool hasEnded = false;                 ///< it was played to its end; playing again begins anew
    bool hasVideo = false;                 ///< there are moving pictures
    bool isHeard = false;                  ///< the device has something to make sound with
    double seconds = 0;                    ///< that it lasts; 0 when unknown
    double position = 0;                   ///< in seconds
    std::optional<ContentProblem> problem; ///< it cannot be played any more

    friend bool operator==(const MediaState&, const MediaState&) = default;
};

/// Plays one document, in another process, which ends with this object. What becomes of that process never hurts this
/// one. Nothing is waited for. Main thread only.
///
/// What is asked for is in the state at once; the process follows, in the order of asking.
class MediaPlayer {
public:
    virtual ~MediaPlayer() = default;

    [[nodiscard]] virtual const MediaState& state() const = 0;
    virtual void play() = 0;
    virtual void pause() = 0;
    /// @param position in seconds, from 0 to the length
    virtual void seek(double position) = 0;
    /// @param volume from 0 to 1, as loud as it sounds
    virtual void setVolume(double volume) = 0;
    /// Pictures are no larger than this from now on. @param width, height in pixels
    virtual void setLargestPicture(int width, int height) = 0;

    /// Called on the main queue after the state has changed by itself. It may destroy the player.
    std::function<void()> changed;
    /// Called on the main queue with each picture; the first comes before anything is played.
    std::function<void(const ContentPicture&)> showPicture;
};

} // namespace tessel
