#pragma once

#include "platform/documents/MediaPlayer.h"
#include "platform/linux/playing/PlayerTalk.h"

#include <memory>

namespace tessel {

/// Plays by talking to a program. It believes nothing that it hears.
class ProcessPlayer final : public MediaPlayer {
public:
    explicit ProcessPlayer(std::shared_ptr<PlayerTalk> talk) : talk_(std::move(talk)) {}
    ~ProcessPlayer() override { talk_->end(); }
    ProcessPlayer(const ProcessPlayer&) = delete;
    ProcessPlayer& operator=(const ProcessPlayer&) = delete;

    [[nodiscard]] const MediaState& state() const override { return state_; }
    void play() override;
    void pause() override;
    void seek(double position) override;
    void setVolume(double volume) override;
    void setLargestPicture(int width, int height) override;

    /// What the program has said. The caller holds the player.
    void hear(const PlayerNote&, const std::optional<ContentPicture>&);

private:
    const std::shared_ptr<PlayerTalk> talk_;
    MediaState state_;
    std::uint32_t lastWish_ = 0; ///< the last order that changes what is heard of playing
};

} // namespace tessel
