#include "platform/qt/player/Playing.h"

#include "platform/linux/decoding/DecoderChannel.h"
#include "platform/qt/decoder/SharedPicture.h"
#include "platform/qt/player/FrameImage.h"

#include <QCoreApplication>
#include <QImage>
#include <QMediaDevices>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tessel::qt {

namespace {

constexpr int kTick = 200;         // milliseconds
constexpr int kFirstPicture = 300; // milliseconds
constexpr int kLargestSide = 4096;
constexpr double kMillisecondsPerSecond = 1000;

qint64 millisecondsOf(double seconds)
{
    constexpr double kMost = 1e9;
    return std::isfinite(seconds) ? std::llround(std::clamp(seconds, 0.0, kMost) * kMillisecondsPerSecond) : 0;
}

double secondsOf(qint64 milliseconds)
{
    return double(milliseconds) / kMillisecondsPerSecond;
}

} // namespace

Playing::Playing(int socket) : socket_(socket), notifier_(socket, QSocketNotifier::Read)
{
    if (!QMediaDevices::audioOutputs().isEmpty()) // without one, Qt's own would not survive it
        output_ = std::make_unique<QAudioOutput>();
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { receiveOrder(); });
    QObject::connect(&sink_, &QVideoSink::videoFrameChanged, &sink_, [this](const auto& frame) { takeFrame(frame); });
    QObject::connect(&ticks_, &QTimer::timeout, &ticks_, [this] { goOn(); });
    tell();
}

void Playing::makePlayer()
{
    player_ = std::make_unique<QMediaPlayer>();
    hasPicture_ = false;
    player_->setAudioOutput(output_.get());
    player_->setVideoSink(&sink_);
    auto* const player = player_.get();
    QObject::connect(player, &QMediaPlayer::mediaStatusChanged, player, [this](auto status) { statusChanged(status); });
    QObject::connect(player, &QMediaPlayer::errorOccurred, player, [this] { fail(ContentProblem::Damaged); });
    QObject::connect(player, &QMediaPlayer::durationChanged, player, [this](qint64 duration) {
        duration_ = duration > 0 ? duration : duration_;
        tell();
    });
    file_.seek(0);
    player_->setSourceDevice(&file_);
}

void Playing::receiveOrder()
{
    FileDescriptor file;
    const auto order = receive<PlayerOrder>(socket_, file);
    if (!order)
        return QCoreApplication::quit();
    lastOrder_ = order->number;
    follow(*order, std::move(file));
    tell();
}

void Playing::follow(const PlayerOrder& order, FileDescriptor file)
{
    switch (order.work) {
    case PlayerOrder::Work::Open:
        return player_ ? void() : open(std::move(file));
    case PlayerOrder::Work::Play:
        return play();
    case PlayerOrder::Work::Pause:
        return pause();
    case PlayerOrder::Work::Seek:
        return seek(millisecondsOf(order.value));
    case PlayerOrder::Work::Volume:
        return setVolume(order.value);
    case PlayerOrder::Work::LargestPicture:
        largest_ = {std::clamp(order.width, 1, kLargestSide), std::clamp(order.height, 1, kLargestSide)};
        return;
    case PlayerOrder::Work::NextPicture:
        isPictureWanted_ = true;
        return sendPicture();
    }
}

void Playing::open(FileDescriptor file)
{
    if (!file_.open(file.get(), QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return fail(ContentProblem::NotReadable);
    (void)file.release();
    makePlayer();
}

/// What has ended is played by a new player: one that has reached the end does not always begin again.
void Playing::reopen(qint64 position)
{
    hasEnded_ = false;
    isLoaded_ = false;
    target_ = position;
    unheardFrom_ = 0;
    makePlayer();
}

void Playing::statusChanged(QMediaPlayer::MediaStatus status)
{
    if (status == QMediaPlayer::InvalidMedia)
        return fail(ContentProblem::Damaged);
    if (status == QMediaPlayer::LoadedMedia && !isLoaded_)
        return loaded();
    if (status == QMediaPlayer::EndOfMedia && isLoaded_) {
        hasEnded_ = true;
        isPlayWanted_ = false;
        ticks_.stop();
    }
    tell();
}

void Playing::loaded()
{
    isLoaded_ = true;
    if (!player_->hasVideo() && !player_->hasAudio())
        return fail(ContentProblem::Damaged);
    isOpen_ = true;
    hasVideo_ = player_->hasVideo();
    if (hasVideo_ && !isPlayWanted_)
        player_->pause(); // has the first picture shown
    const auto target = std::exchange(target_, std::nullopt);
    if (target && (duration_ <= 0 || *target < duration_)) // what has become shorter begins anew
        seek(*target);
    if (isPlayWanted_)
        play();
    QTimer::singleShot(kFirstPicture, player_.get(), [this] {
        if (hasVideo_ && !hasPicture_ && !isPlayWanted_)
            player_->setPosition(player_->position()); // Qt sometimes shows none at first
    });
    tell();
}

void Playing::play()
{
    isPlayWanted_ = true;
    if (hasEnded_)
        return reopen(0);
    if (!isLoaded_ || problem_)
        return;
    if (isUnheard()) {
        if (!unheardSince_.isValid())
            unheardSince_.start();
    } else {
        player_->play();
    }
    ticks_.start(kTick);
}

void Playing::pause()
{
    isPlayWanted_ = false;
    ticks_.stop();
    if (!isLoaded_ || problem_)
        return;
    if (isUnheard()) {
        unheardFrom_ = unheardPosition();
        unheardSince_.invalidate();
    } else {
        player_->pause();
    }
}

void Playing::seek(qint64 position)
{
    if (hasEnded_)
        return reopen(position);
    if (!isLoaded_) {
        target_ = position;
        return;
    }
    if (isUnheard()) {
        unheardFrom_ = std::min(position, duration_);
        if (unheardSince_.isValid())
            unheardSince_.start();
    } else {
        player_->setPosition(position);
    }
}

void Playing::setVolume(double volume)
{
    const auto heard = std::isfinite(volume) ? float(std::clamp(volume, 0.0, 1.0)) : 1.0F;
    if (output_)
        output_->setVolume(QAudio::convertVolume(heard, QAudio::LogarithmicVolumeScale, QAudio::LinearVolumeScale));
}

/// Some time of playing has passed.
void Playing::goOn()
{
    if (isLoaded_ && isUnheard() && unheardPosition() >= duration_) {
        unheardFrom_ = duration_;
        unheardSince_.invalidate();
        return statusChanged(QMediaPlayer::EndOfMedia);
    }
    tell();
}

bool Playing::isUnheard() const
{
    return !output_ && !hasVideo_;
}

qint64 Playing::unheardPosition() const
{
    const auto passed = unheardSince_.isValid() ? unheardSince_.elapsed() : 0;
    return std::min(unheardFrom_ + passed, duration_);
}

void Playing::fail(ContentProblem problem)
{
    problem_ = problem;
    isPlayWanted_ = false;
    ticks_.stop();
    tell();
}

void Playing::takeFrame(const QVideoFrame& frame)
{
    if (!frame.isValid())
        return;
    frame_ = frame;
    hasPicture_ = true;
    sendPicture();
}

void Playing::sendPicture()
{
    if (!isPictureWanted_ || !frame_.isValid())
        return;
    auto image = imageOf(std::exchange(frame_, QVideoFrame()));
    if (image.isNull())
        return;
    if (image.width() > largest_.width() || image.height() > largest_.height())
        image = image.scaled(image.size().scaled(largest_, Qt::KeepAspectRatio).expandedTo({1, 1}),
                             Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const auto picture = sharedPicture(image);
    if (!picture.isOpen())
        return;
    auto message = note();
    message.width = image.width();
    message.height = image.height();
    isPictureWanted_ = false;
    if (!send(socket_, message, picture.get()))
        QCoreApplication::quit();
}

void Playing::tell()
{
    if (!send(socket_, note()))
        QCoreApplication::quit();
}

qint64 Playing::position() const
{
    return hasEnded_                 ? duration_
           : target_                 ? *target_
           : isUnheard() || !player_ ? unheardPosition()
                                     : player_->position();
}

PlayerNote Playing::note() const
{
    PlayerNote note;
    note.number = lastOrder_;
    note.problem = problem_ ? static_cast<std::int32_t>(*problem_) + 1 : 0;
    note.isOpen = isOpen_ ? 1 : 0;
    note.isPlaying = isPlayWanted_ ? 1 : 0;
    note.hasEnded = hasEnded_ ? 1 : 0;
    note.hasVideo = hasVideo_ ? 1 : 0;
    note.isHeard = output_ ? 1 : 0;
    note.seconds = secondsOf(duration_);
    note.position = secondsOf(position());
    return note;
}

} // namespace tessel::qt
