#pragma once

#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/playing/PlayerMessages.h"

#include <QAudio>
#include <QAudioDevice>
#include <QAudioOutput>
#include <QElapsedTimer>
#include <QFile>
#include <QMediaPlayer>
#include <QSize>
#include <QSocketNotifier>
#include <QTimer>
#include <QVideoFrame>
#include <QVideoSink>

#include <memory>
#include <optional>

namespace tessel::qt {

/// Plays one document, by the orders that come over a socket, and tells what becomes of it.
class Playing {
public:
    explicit Playing(int socket);
    Playing(const Playing&) = delete;
    Playing& operator=(const Playing&) = delete;

private:
    void receiveOrder();
    void follow(const PlayerOrder&, FileDescriptor file);
    void open(FileDescriptor file);
    void makePlayer();
    void reopen(qint64 position);
    void loaded();
    void play();
    void pause();
    void seek(qint64 position);
    void setVolume(double volume);
    void goOn();
    void fail(ContentProblem);
    void statusChanged(QMediaPlayer::MediaStatus);
    void takeFrame(const QVideoFrame&);
    void sendPicture();
    void tell();
    [[nodiscard]] PlayerNote note() const;
    [[nodiscard]] qint64 position() const;

    // Sound that no device makes passes unheard, by the clock.
    [[nodiscard]] bool isUnheard() const;
    [[nodiscard]] qint64 unheardPosition() const;

    const int socket_;
    QFile file_;
    std::unique_ptr<QAudioOutput> output_;
    QVideoSink sink_;
    std::unique_ptr<QMediaPlayer> player_;
    QSocketNotifier notifier_;
    QTimer ticks_;
    std::uint32_t lastOrder_ = 0;
    std::optional<ContentProblem> problem_;
    bool isOpen_ = false; ///< has been loaded once
    bool isLoaded_ = false;
    bool hasVideo_ = false;
    bool hasPicture_ = false; ///< one came since it was loaded
    qint64 duration_ = 0;     ///< in milliseconds, as all times here
    bool isPlayWanted_ = false;
    bool hasEnded_ = false;
    std::optional<qint64> target_; ///< where to go as soon as the player can
    QElapsedTimer unheardSince_;
    qint64 unheardFrom_ = 0;
    QSize largest_ = {1280, 1280};
    QVideoFrame frame_; ///< that was not sent yet
    bool isPictureWanted_ = true;
};

} // namespace tessel::qt
