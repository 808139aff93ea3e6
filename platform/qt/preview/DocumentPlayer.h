#pragma once

#include "platform/documents/MediaPlayer.h"
#include "platform/qt/preview/PreviewItem.h"

#include <QImage>

#include <memory>
#include <optional>

namespace tessel::qt {

/// Plays a preview's sound or film, and shows the pictures of that, as large as fits. What plays it is there only while
/// `active`; the place is kept, also when the document is read anew.
class DocumentPlayer : public PreviewItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool active MEMBER isActive_ WRITE setActive NOTIFY activeChanged)
    Q_PROPERTY(double volume MEMBER volume_ WRITE setVolume NOTIFY volumeChanged)
    Q_PROPERTY(bool ready READ isReady NOTIFY changed)
    Q_PROPERTY(bool playing READ isPlaying NOTIFY changed)
    Q_PROPERTY(bool heard READ isHeard NOTIFY changed)
    Q_PROPERTY(bool pictured READ isPictured NOTIFY changed)
    Q_PROPERTY(double seconds READ seconds NOTIFY changed)
    Q_PROPERTY(double position READ position NOTIFY changed)
    Q_PROPERTY(QString elapsed READ elapsed NOTIFY changed)
    Q_PROPERTY(QString remaining READ remaining NOTIFY changed)

public:
    explicit DocumentPlayer(QQuickItem* parent = nullptr);
    ~DocumentPlayer() override;

    void setActive(bool);
    /// @param volume from 0 to 1, as loud as it sounds
    void setVolume(double volume);
    [[nodiscard]] bool isReady() const { return player_ && player_->state().isOpen; }
    [[nodiscard]] bool isPlaying() const { return player_ && player_->state().isPlaying; }
    /// Whether the device has something to make sound with.
    [[nodiscard]] bool isHeard() const { return isReady() && player_->state().isHeard; }
    /// Whether there is, or will be, a picture.
    [[nodiscard]] bool isPictured() const { return hasVideo_; }
    [[nodiscard]] double seconds() const { return seconds_; }
    [[nodiscard]] double position() const { return position_; }
    /// "1:05", in the digits of the user's language.
    [[nodiscard]] QString elapsed() const;
    [[nodiscard]] QString remaining() const;

    /// Plays or pauses; from the beginning when it has ended.
    Q_INVOKABLE void toggle();
    /// @param position in seconds
    Q_INVOKABLE void seek(double position);

signals:
    void activeChanged();
    void volumeChanged();
    void changed();

protected:
    void follow() override;
    void geometryChange(const QRectF& now, const QRectF& before) override;
    QSGNode* updatePaintNode(QSGNode*, UpdatePaintNodeData*) override;

private:
    void open();
    void close();
    void playerChanged();
    void tellPlace(const MediaState&);
    void showPicture(const ContentPicture&);
    void tellSize();

    bool isActive_ = false;
    double volume_ = 1;
    std::shared_ptr<MediaPlayer> player_;
    std::optional<URL> url_; ///< of what is played, and so on
    std::uint64_t reading_ = 0;
    bool hasVideo_ = false;
    double seconds_ = 0;
    double position_ = 0;
    QImage picture_;
    bool isPictureNew_ = false;
};

} // namespace tessel::qt
