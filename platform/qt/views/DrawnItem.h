#pragma once

#include "platform/qt/views/PictureNodes.h"

#include <QPointer>
#include <QQuickPaintedItem>

#include <memory>

namespace tessel::qt {

/// Shows what a view drew. The drawing is taken on the main thread and painted wherever the scene is rendered.
class DrawnItem final : public QQuickPaintedItem {
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
    QSGNode* updatePaintNode(QSGNode*, UpdatePaintNodeData*) override;

private:
    QPointer<DrawnNode> node_;
    std::shared_ptr<const DisplayList> drawing_; ///< of the rendering
    bool dark_ = false;
};

} // namespace tessel::qt
