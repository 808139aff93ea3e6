#include "platform/qt/preview/DocumentPicture.h"

#include "platform/base/Platform.h"
#include "platform/qt/preview/ImageOfPicture.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>

namespace tessel::qt {

namespace {

constexpr int kUntilRest = 70;          // milliseconds
constexpr int kShortestFrame = 20;      // milliseconds
constexpr int kUsualFrame = 100;        // milliseconds, of frames that name no time
constexpr int kMostPixels = 4096;       // along one side
constexpr double kWorthPainting = 1.02; // how much larger than the whole was painted

Rect rectOf(const QRectF& rect)
{
    return {rect.x(), rect.y(), rect.width(), rect.height()};
}

/// A child that shows an image, made when there is none yet. It has all that it needs before it is a child.
void showImage(QSGNode& parent, QSGImageNode*& node, QQuickWindow& window, const QImage& image)
{
    auto* const shown = node ? node : window.createImageNode();
    shown->setOwnsTexture(true);
    shown->setTexture(window.createTextureFromImage(image));
    shown->setSourceRect(QRectF({}, image.size()));
    shown->setFiltering(QSGTexture::Linear);
    if (!std::exchange(node, shown))
        parent.appendChildNode(shown);
}

/// Moves nothing itself. Painted by the processor, however, children that come later know where the item is only
/// beneath a node that could.
struct PictureNode : QSGTransformNode {
    QSGImageNode* whole = nullptr;
    QSGImageNode* sharp = nullptr;
};

} // namespace

class DocumentPicture::Order {
public:
    using Use = std::function<void(const Answer&)>;

    static std::shared_ptr<Order> place(DocumentPicture& owner, const DocumentDecoder::PictureWish& wish, Use use)
    {
        auto order = std::make_shared<Order>();
        order->owner_ = &owner;
        order->ticket_ = platform::installed().decoder.paint(
            wish, [order, use = std::move(use)](const auto& picture, std::optional<ContentProblem> problem) {
                order->deliver({picture ? imageOf(*picture) : QImage(), picture ? picture->milliseconds : 0, problem},
                               order, use);
            });
        return order;
    }

    static void cancel(std::shared_ptr<Order>& order)
    {
        const auto cancelled = std::exchange(order, nullptr);
        if (!cancelled)
            return;
        {
            const std::lock_guard lock(cancelled->mutex_);
            cancelled->owner_ = nullptr;
        }
        platform::installed().decoder.cancel(cancelled->ticket_);
    }

private:
    /// On any thread.
    void deliver(const Answer& answer, const std::shared_ptr<Order>& order, const Use& use)
    {
        const std::lock_guard lock(mutex_);
        if (!owner_)
            return;
        QMetaObject::invokeMethod(
            owner_,
            [order, use, answer] {
                if (order->owner_) // changed on this thread alone
                    use(answer);
            },
            Qt::QueuedConnection);
    }

    std::mutex mutex_;
    DocumentPicture* owner_ = nullptr;
    DocumentDecoder::Ticket ticket_ = 0;
};

DocumentPicture::DocumentPicture(QQuickItem* parent) : PreviewItem(parent)
{
    connect(this, &DocumentPicture::wishChanged, this, &DocumentPicture::polish);
}

DocumentPicture::~DocumentPicture()
{
    Order::cancel(wholeOrder_);
    Order::cancel(partOrder_);
}

void DocumentPicture::setIndex(int index)
{
    if (std::exchange(index_, index) == index)
        return;
    url_.reset();
    emit wishChanged();
}

void DocumentPicture::setFitted(const QSizeF& fitted)
{
    if (std::exchange(fitted_, fitted) != fitted)
        emit wishChanged();
}

void DocumentPicture::setSight(const QRectF& sight)
{
    if (std::exchange(sight_, sight) == sight)
        return;
    rest_.start(kUntilRest, this);
}

void DocumentPicture::setPlaying(bool isPlaying)
{
    if (std::exchange(isPlaying_, isPlaying) == isPlaying)
        return;
    frameTimer_.stop();
    if (isPlaying && isPainted())
        moveOn();
    emit wishChanged();
}

double DocumentPicture::aspect() const
{
    return whole_.isNull() ? 0 : static_cast<double>(whole_.width()) / whole_.height();
}

void DocumentPicture::geometryChange(const QRectF& now, const QRectF& before)
{
    QQuickItem::geometryChange(now, before);
    if (now.size() == before.size())
        return;
    rest_.start(kUntilRest, this);
    update();
}

void DocumentPicture::itemChange(ItemChange change, const ItemChangeData& data)
{
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged)
        polish();
    QQuickItem::itemChange(change, data);
}

void DocumentPicture::updatePolish()
{
    wish();
}

bool DocumentPicture::canBePainted() const
{
    return window() && preview() && preview()->url() && !fitted_.isEmpty();
}

QSize DocumentPicture::pixels(const QSizeF& points) const
{
    const auto scale = window()->effectiveDevicePixelRatio();
    const auto largest = std::max({1.0, points.width() * scale / kMostPixels, points.height() * scale / kMostPixels});
    return {std::max(1, qRound(points.width() * scale / largest)),
            std::max(1, qRound(points.height() * scale / largest))};
}

void DocumentPicture::wish()
{
    if (!canBePainted())
        return;
    const auto wanted = pixels(fitted_);
    const bool isOtherDocument = url_ != preview()->url();
    if (!isOtherDocument && reading_ == preview()->reading() && wholePixels_ == wanted)
        return;
    url_ = preview()->url();
    reading_ = preview()->reading();
    wholePixels_ = wanted;
    frame_ = 0;
    frameTimer_.stop();
    nextFrame_.reset();
    part_ = {};
    if (isOtherDocument)
        whole_ = sharp_ = {};
    orderWhole(index_);
}

void DocumentPicture::orderWhole(int frame)
{
    Order::cancel(wholeOrder_);
    wholeOrder_ = Order::place(*this, {*url_, frame, wholePixels_.width(), wholePixels_.height(), std::nullopt},
                               [this](const Answer& answer) {
                                   wholeOrder_.reset();
                                   if (frameTimer_.isActive())
                                       nextFrame_ = answer;
                                   else
                                       wholeWasPainted(answer);
                               });
}

void DocumentPicture::wholeWasPainted(const Answer& answer)
{
    hasFailed_ = answer.problem.has_value();
    if (!hasFailed_) {
        whole_ = answer.image;
        isWholeNew_ = true;
        if (part_.isNull())
            sharp_ = {}; // of what was read before
        update();
    }
    emit paintedChanged();
    if (hasFailed_)
        return preview() ? preview()->pictureHasProblem(index_, *answer.problem) : void();
    rest_.start(kUntilRest, this);
    if (answer.milliseconds > 0 || frame_ > 0)
        frameTimer_.start(answer.milliseconds > 0 ? std::max(kShortestFrame, answer.milliseconds) : kUsualFrame, this);
    if (isPlaying_)
        moveOn();
    else
        frameTimer_.stop();
}

/// The next frame is painted while this one is shown.
void DocumentPicture::moveOn()
{
    const int count = preview() ? preview()->count() : 0;
    if (count <= 1 || preview()->kind() != DocumentPreview::Image)
        return frameTimer_.stop();
    frame_ = (frame_ + 1) % count;
    orderWhole(frame_);
}

QRectF DocumentPicture::partInSight() const
{
    const auto sight = sight_.intersected(QRectF(0, 0, width(), height()));
    return {sight.x() / width(), sight.y() / height(), sight.width() / width(), sight.height() / height()};
}

void DocumentPicture::orderPart()
{
    if (!canBePainted() || whole_.isNull() || width() <= 0 || height() <= 0 || frameTimer_.isActive())
        return;
    const auto scale = window()->effectiveDevicePixelRatio();
    const bool isLarger = width() * scale > wholePixels_.width() * kWorthPainting;
    const bool isAllThereIs =
        preview()->kind() == DocumentPreview::Image && whole_.width() >= preview()->size().width();
    if (!isLarger || isAllThereIs) {
        part_ = {};
        sharp_ = {};
        return update();
    }
    const auto part = partInSight();
    if (part.isEmpty() || (part == part_ && partWidth_ == width()))
        return;
    part_ = part;
    partWidth_ = width();
    Order::cancel(partOrder_);
    partOrder_ = Order::place(*this,
                              {*url_, index_, static_cast<int>(std::lround(width() * scale)),
                               static_cast<int>(std::lround(height() * scale)), rectOf(part)},
                              [this, part](const Answer& answer) {
                                  partOrder_.reset();
                                  partWasPainted(answer, part);
                              });
}

void DocumentPicture::partWasPainted(const Answer& answer, const QRectF& part)
{
    if (answer.problem)
        return;
    sharp_ = answer.image;
    sharpPart_ = part;
    isSharpNew_ = true;
    update();
}

void DocumentPicture::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == rest_.timerId()) {
        rest_.stop();
        orderPart();
    } else if (event->timerId() == frameTimer_.timerId()) {
        frameTimer_.stop();
        if (const auto next = std::exchange(nextFrame_, std::nullopt))
            wholeWasPainted(*next);
    }
}

QSGNode* DocumentPicture::updatePaintNode(QSGNode* node, UpdatePaintNodeData*)
{
    if (whole_.isNull()) {
        delete node;
        return nullptr;
    }
    auto* const picture = node ? static_cast<PictureNode*>(node) : new PictureNode;
    if (std::exchange(isWholeNew_, false) || !picture->whole)
        showImage(*picture, picture->whole, *window(), whole_);
    picture->whole->setRect(0, 0, width(), height());
    if (sharp_.isNull()) {
        delete std::exchange(picture->sharp, nullptr);
        return picture;
    }
    if (std::exchange(isSharpNew_, false) || !picture->sharp)
        showImage(*picture, picture->sharp, *window(), sharp_);
    picture->sharp->setRect(sharpPart_.x() * width(), sharpPart_.y() * height(), sharpPart_.width() * width(),
                            sharpPart_.height() * height());
    return picture;
}

} // namespace tessel::qt
