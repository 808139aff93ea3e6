#include "platform/linux/playing/ProcessPlayer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tessel {

namespace {

using Work = PlayerOrder::Work;

double possible(double seconds, double most)
{
    return std::isfinite(seconds) ? std::clamp(seconds, 0.0, most) : 0;
}

std::optional<ContentProblem> problemOf(const PlayerNote& note)
{
    if (note.problem == 0)
        return std::nullopt;
    const bool isKnown = note.problem > 0 && note.problem <= static_cast<std::int32_t>(ContentProblem::NotPlayable) + 1;
    return isKnown ? static_cast<ContentProblem>(note.problem - 1) : ContentProblem::NotPlayable;
}

} // namespace

void ProcessPlayer::play()
{
    if (state_.isPlaying || state_.problem)
        return;
    state_.isPlaying = true;
    if (std::exchange(state_.hasEnded, false))
        state_.position = 0;
    lastWish_ = talk_->say({.work = Work::Play});
}

void ProcessPlayer::pause()
{
    if (!state_.isPlaying)
        return;
    state_.isPlaying = false;
    lastWish_ = talk_->say({.work = Work::Pause});
}

void ProcessPlayer::seek(double position)
{
    if (state_.problem)
        return;
    state_.hasEnded = false;
    state_.position = std::max(0.0, position);
    lastWish_ = talk_->say({.work = Work::Seek, .value = state_.position});
}

void ProcessPlayer::setVolume(double volume)
{
    talk_->say({.work = Work::Volume, .value = volume});
}

void ProcessPlayer::setLargestPicture(int width, int height)
{
    talk_->say({.work = Work::LargestPicture, .width = width, .height = height});
}

void ProcessPlayer::hear(const PlayerNote& note, const std::optional<ContentPicture>& picture)
{
    constexpr double kLongest = 1e7; // seconds
    const auto before = state_;
    state_.problem = problemOf(note);
    if (!state_.problem) {
        state_.isOpen = note.isOpen == 1;
        state_.hasVideo = note.hasVideo == 1;
        state_.isHeard = note.isHeard == 1;
        state_.seconds = possible(note.seconds, kLongest);
    }
    const bool knowsWishes = note.number >= lastWish_;
    if (knowsWishes || state_.problem)
        state_.isPlaying = note.isPlaying == 1 && !state_.problem;
    if (knowsWishes && !state_.problem) {
        state_.hasEnded = note.hasEnded == 1;
        state_.position = possible(note.position, state_.seconds > 0 ? state_.seconds : kLongest);
    }
    if (picture && showPicture)
        showPicture(*picture);
    if (note.width > 0)
        talk_->say({.work = Work::NextPicture});
    const auto tell = changed; // it may destroy what it is called by
    if (state_ != before && tell)
        tell();
}

} // namespace tessel
