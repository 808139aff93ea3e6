#pragma once

#include "platform/ui/Canvas.h"

#include <QBrush>
#include <QPen>

class QPainter;

namespace tessel::qt {

/// Draws with a painter, whose coordinates are the view's own. Outlines have butt ends and mitred corners; shapes that
/// cross themselves are filled by the non-zero winding rule.
class PainterCanvas final : public Canvas {
public:
    /// @param painter outlives the canvas
    /// @param dark draws in the colours of dark appearance
    PainterCanvas(QPainter& painter, bool dark);

    void setFillColor(const Color&) override;
    void setStrokeColor(const Color&) override;
    void setLineWidth(double points) override;
    void setBlendMode(BlendMode) override;

    void fill(const Path&) override;
    void stroke(const Path&) override;
    void fillRect(const Rect&) override;
    void fillOval(const Rect&) override;
    void strokeOval(const Rect&) override;

private:
    QPainter& painter_;
    bool dark_;
    QBrush fill_{Qt::black};
    QPen stroke_;
};

} // namespace tessel::qt
