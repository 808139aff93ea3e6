#include "platform/qt/views/DrawnItem.h"

#include "platform/qt/views/PainterCanvas.h"
#include "platform/ui/DisplayList.h"

#include <QPainter>

namespace tessel::qt {

DrawnItem::DrawnItem(QQuickItem* parent) : QQuickPaintedItem(parent)
{
}

void DrawnItem::setNode(DrawnNode* node)
{
    if (node_ == node)
        return;
    if (node_)
        node_->disconnect(this);
    node_ = node;
    if (node_)
        connect(node_, &DrawnNode::drawingChanged, this, &DrawnItem::drawAnew);
    drawAnew();
    emit nodeChanged();
}

void DrawnItem::drawAnew()
{
    polish();
    update();
}

void DrawnItem::geometryChange(const QRectF& now, const QRectF& before)
{
    QQuickPaintedItem::geometryChange(now, before);
    drawAnew();
}

void DrawnItem::updatePolish()
{
    drawing_ = node_ ? node_->drawing() : nullptr;
    dark_ = node_ && node_->isDark();
}

/// The main thread waits meanwhile.
QSGNode* DrawnItem::updatePaintNode(QSGNode* before, UpdatePaintNodeData* data)
{
    rendered_ = drawing_;
    isRenderedDark_ = dark_;
    return QQuickPaintedItem::updatePaintNode(before, data);
}

void DrawnItem::paint(QPainter* painter)
{
    if (!rendered_)
        return;
    PainterCanvas canvas(*painter, isRenderedDark_);
    rendered_->drawOn(canvas);
}

} // namespace tessel::qt
