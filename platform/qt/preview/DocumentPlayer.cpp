#include "platform/qt/preview/DocumentPlayer.h"

#include "platform/base/Platform.h"
#include "platform/qt/preview/ImageOfPicture.h"

#include <QLocale>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QtMath>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tessel::qt {

namespace {

QString timeText(double seconds)
{
    const QLocale locale;
    const auto whole = static_cast<qint64>(std::max(0.0, seconds));
    const auto twoDigits = [&](qint64 number) {
        return number < 10 ? locale.zeroDigit() + locale.toString(number) : locale.toString(number);
    };
    constexpr qint64 kMinute = 60;
    constexpr qint64 kHour = 3600;
    const auto minutes = whole % kHour / kMinute;
    const auto end = ":" + twoDigits(whole % kMinute);
    if (whole < kHour)
        return locale.toString(minutes) + end;
    return QString::number(whole / kHour) + ":" + twoDigits(minutes) + end;
}

} // namespace

DocumentPlayer::DocumentPlayer(QQuickItem* parent) : PreviewItem(parent)
{
}

DocumentPlayer::~DocumentPlayer() = default;

void DocumentPlayer::setActive(bool isActive)
{
    if (std::exchange(isActive_, isActive) == isActive)
        return;
    follow();
    emit activeChanged();
}

void DocumentPlayer::setVolume(double volume)
{
    if (std::exchange(volume_, volume) == volume)
        return;
    if (player_)
        player_->setVolume(volume);
    emit volumeChanged();
}

/// Opens what the preview shows, once it is another document or has been read anew; it goes on playing then.
void DocumentPlayer::follow()
{
    const bool isWanted = isActive_ && preview() && preview()->url() && preview()->isMedia();
    if (!isWanted)
        return close();
    const bool isSameDocument = url_ == preview()->url();
    if (player_ && isSameDocument && reading_ == preview()->reading())
        return;
    if (!isSameDocument) {
        position_ = preview()->place();
        seconds_ = 0;
        picture_ = {};
        hasVideo_ = preview()->kind() == DocumentPreview::Video;
    }
    const bool wasPlaying = isSameDocument && isPlaying();
    url_ = preview()->url();
    reading_ = preview()->reading();
    open();
    if (player_ && wasPlaying)
        player_->play();
    emit changed();
}

void DocumentPlayer::open()
{
    player_ = platform::installed().decoder.openPlayer(*url_);
    if (!player_)
        return preview()->playerHasProblem(ContentProblem::NotPlayable);
    player_->changed = [this] { playerChanged(); };
    player_->showPicture = [this](const ContentPicture& picture) { showPicture(picture); };
    player_->setVolume(volume_);
    tellSize();
    if (position_ > 0)
        player_->seek(position_);
}

void DocumentPlayer::close()
{
    if (std::exchange(player_, nullptr))
        emit changed();
}

void DocumentPlayer::playerChanged()
{
    const auto state = player_->state();
    if (state.problem) {
        close();
        return preview() ? preview()->playerHasProblem(*state.problem) : void();
    }
    if (state.isOpen) {
        hasVideo_ = state.hasVideo;
        seconds_ = state.seconds;
        position_ = state.position;
        tellPlace(state);
    }
    emit changed();
}

/// Now and then, while it goes on.
void DocumentPlayer::tellPlace(const MediaState& state)
{
    constexpr double kOften = 5; // seconds
    const auto place = state.hasEnded ? 0 : state.position;
    if (preview() && (!state.isPlaying || std::abs(place - preview()->place()) >= kOften))
        preview()->setPlace(place);
}

void DocumentPlayer::showPicture(const ContentPicture& picture)
{
    picture_ = imageOf(picture);
    isPictureNew_ = true;
    update();
}

void DocumentPlayer::toggle()
{
    if (!player_)
        return;
    if (player_->state().isPlaying)
        player_->pause();
    else
        player_->play();
    playerChanged();
}

void DocumentPlayer::seek(double position)
{
    if (!isReady())
        return;
    player_->seek(std::clamp(position, 0.0, seconds_));
    playerChanged();
}

QString DocumentPlayer::elapsed() const
{
    return timeText(position_);
}

/// With the time elapsed, it makes the whole.
QString DocumentPlayer::remaining() const
{
    return timeText(std::floor(seconds_) - std::floor(position_));
}

void DocumentPlayer::geometryChange(const QRectF& now, const QRectF& before)
{
    QQuickItem::geometryChange(now, before);
    if (now.size() == before.size())
        return;
    tellSize();
    update();
}

void DocumentPlayer::tellSize()
{
    if (!player_ || !window() || width() < 1 || height() < 1)
        return;
    const auto scale = window()->effectiveDevicePixelRatio();
    player_->setLargestPicture(qCeil(width() * scale), qCeil(height() * scale));
}

QSGNode* DocumentPlayer::updatePaintNode(QSGNode* old, UpdatePaintNodeData*)
{
    if (picture_.isNull()) {
        delete old;
        return nullptr;
    }
    auto* const node = old ? static_cast<QSGImageNode*>(old) : window()->createImageNode();
    if (std::exchange(isPictureNew_, false) || !old) {
        node->setOwnsTexture(true);
        node->setTexture(window()->createTextureFromImage(picture_));
        node->setSourceRect(QRectF({}, picture_.size()));
        node->setFiltering(QSGTexture::Linear);
    }
    const auto fitted = QSizeF(picture_.size()).scaled(size(), Qt::KeepAspectRatio);
    node->setRect(QRectF({(width() - fitted.width()) / 2, (height() - fitted.height()) / 2}, fitted));
    return node;
}

} // namespace tessel::qt
