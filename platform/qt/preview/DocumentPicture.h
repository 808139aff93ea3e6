#pragma once

#include "platform/qt/preview/PreviewItem.h"

#include <QBasicTimer>
#include <QImage>

#include <memory>
#include <mutex>
#include <optional>

namespace tessel::qt {

/// One picture of a document: an image, or a page. It is painted once as large as it is when it fits (`fitted`), and,
/// when it is larger, its part in sight (`sight`) once more as sharp as the screen is, as soon as that has come to
/// rest. Until something new is painted, what there is is stretched. An image of several frames moves while it is
/// `playing`.
class DocumentPicture : public PreviewItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int index MEMBER index_ WRITE setIndex NOTIFY wishChanged)
    Q_PROPERTY(QSizeF fitted MEMBER fitted_ WRITE setFitted NOTIFY wishChanged)
    Q_PROPERTY(QRectF sight MEMBER sight_ WRITE setSight NOTIFY wishChanged)
    Q_PROPERTY(bool playing MEMBER isPlaying_ WRITE setPlaying NOTIFY wishChanged)
    Q_PROPERTY(bool painted READ isPainted NOTIFY paintedChanged)
    Q_PROPERTY(bool failed MEMBER hasFailed_ NOTIFY paintedChanged)
    Q_PROPERTY(double aspect READ aspect NOTIFY paintedChanged)

public:
    explicit DocumentPicture(QQuickItem* parent = nullptr);
    ~DocumentPicture() override;

    void setIndex(int);
    void setFitted(const QSizeF&);
    void setSight(const QRectF&);
    void setPlaying(bool);
    [[nodiscard]] bool isPainted() const { return !whole_.isNull(); }
    /// Width to height of what was painted; 0 before.
    [[nodiscard]] double aspect() const;

signals:
    void wishChanged();
    void paintedChanged();

protected:
    void follow() override { polish(); }
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void itemChange(ItemChange, const ItemChangeData&) override;
    void updatePolish() override;
    void timerEvent(QTimerEvent*) override;
    QSGNode* updatePaintNode(QSGNode*, UpdatePaintNodeData*) override;

private:
    struct Answer {
        QImage image;
        int milliseconds = 0;
        std::optional<ContentProblem> problem;
    };
    /// One picture that is being painted: what is told to it when the item has gone, or wants another one, is dropped.
    class Order;

    [[nodiscard]] bool canBePainted() const;
    [[nodiscard]] QSize pixels(const QSizeF& points) const;
    [[nodiscard]] QRectF partInSight() const;
    void wish();
    void orderWhole(int frame);
    void orderPart();
    void wholeWasPainted(const Answer&);
    void partWasPainted(const Answer&, const QRectF& part);
    void moveOn();

    int index_ = 0;
    QSizeF fitted_;
    QRectF sight_;
    bool isPlaying_ = false;
    bool hasFailed_ = false;

    std::optional<URL> url_; ///< of what was ordered last, and so on
    std::uint64_t reading_ = 0;
    QSize wholePixels_;
    int frame_ = 0;
    QRectF part_;
    double partWidth_ = 0;
    std::shared_ptr<Order> wholeOrder_;
    std::shared_ptr<Order> partOrder_;
    QBasicTimer rest_;
    QBasicTimer frameTimer_;
    std::optional<Answer> nextFrame_;

    QImage whole_;
    QImage sharp_;
    QRectF sharpPart_; ///< in fractions of the whole
    bool isWholeNew_ = false;
    bool isSharpNew_ = false;
};

} // namespace tessel::qt
