#pragma once

#include "platform/qt/views/PictureNodes.h"

#include <QPointer>
#include <QQuickPaintedItem>

#include <memory>

namespace tessel::qt {

/// Shows what a view drew. The drawing is taken on the main thread and painted wherever the scene is rendered.
class DrawnItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tessel::qt::DrawnNode* node READ node WRITE setNode NOTIFY nodeChanged)

public:
    explicit DrawnItem(QQuickItem* parent = nullptr);

    [[nodiscard]] DrawnNode* node() const { return node_; }
    void setNode(DrawnNode*);

    void paint(QPainter*) override;

signals:
    void nodeChanged();

protected:
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void updatePolish() override;
    QSGNode* updatePaintNode(QSGNode*, UpdatePaintNodeData*) override;

private:
    void drawAnew();

    QPointer<DrawnNode> node_;
    std::shared_ptr<const DisplayList> drawing_;
    std::shared_ptr<const DisplayList> rendered_; ///< what `paint` paints, on whichever thread
    bool dark_ = false;
    bool isRenderedDark_ = false;
};

} // namespace tessel::qt
