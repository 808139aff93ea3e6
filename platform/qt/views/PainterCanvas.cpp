#include "platform/qt/views/PainterCanvas.h"

#include "platform/qt/views/Colors.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tessel::qt {

namespace {

QRectF rectOf(const Rect& rect)
{
    return {rect.x, rect.y, rect.width, rect.height};
}

QPainter::CompositionMode modeOf(BlendMode mode)
{
    switch (mode) {
    case BlendMode::Normal:
        return QPainter::CompositionMode_SourceOver;
    case BlendMode::Copy:
        return QPainter::CompositionMode_Source;
    case BlendMode::Multiply:
        return QPainter::CompositionMode_Multiply;
    case BlendMode::Screen:
        return QPainter::CompositionMode_Screen;
    case BlendMode::Overlay:
        return QPainter::CompositionMode_Overlay;
    case BlendMode::Darken:
        return QPainter::CompositionMode_Darken;
    case BlendMode::Lighten:
        return QPainter::CompositionMode_Lighten;
    case BlendMode::SourceAtop:
        return QPainter::CompositionMode_SourceAtop;
    case BlendMode::DestinationOut:
        return QPainter::CompositionMode_DestinationOut;
    }
    return QPainter::CompositionMode_SourceOver;
}

/// The painter counts angles in degrees and anticlockwise.
void addArc(QPainterPath& path, const Path::Element& arc)
{
    constexpr double kFullTurn = 2 * std::numbers::pi;
    constexpr double kDegrees = 360 / kFullTurn;
    auto sweep = arc.endAngle - arc.startAngle;
    if (sweep < 0)
        sweep += std::ceil(-sweep / kFullTurn) * kFullTurn;
    sweep = std::min(sweep, kFullTurn);
    const QRectF box(arc.point.x - arc.radius, arc.point.y - arc.radius, 2 * arc.radius, 2 * arc.radius);
    const QPointF start(arc.point.x + arc.radius * std::cos(arc.startAngle),
                        arc.point.y + arc.radius * std::sin(arc.startAngle));
    if (path.elementCount() == 0)
        path.moveTo(start);
    path.arcTo(box, -arc.startAngle * kDegrees, -sweep * kDegrees);
}

QPainterPath pathOf(const Path& path)
{
    QPainterPath result;
    result.setFillRule(Qt::WindingFill);
    for (const auto& element : path.elements())
        switch (element.verb) {
        case Path::Verb::Move:
            result.moveTo(element.point.x, element.point.y);
            break;
        case Path::Verb::Line:
            result.lineTo(element.point.x, element.point.y);
            break;
        case Path::Verb::Arc:
            addArc(result, element);
            break;
        case Path::Verb::Close:
            result.closeSubpath();
            break;
        }
    return result;
}

} // namespace

PainterCanvas::PainterCanvas(QPainter& painter, bool dark) : painter_(painter), dark_(dark)
{
    painter_.setRenderHint(QPainter::Antialiasing);
    setFillColor(Color::black());
    stroke_ = QPen(adaptedColor(Color::black(), dark), 1, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
}

void PainterCanvas::setFillColor(const Color& color)
{
    fill_ = adaptedColor(color, dark_);
}

void PainterCanvas::setStrokeColor(const Color& color)
{
    stroke_.setColor(adaptedColor(color, dark_));
}

/// A pen of no width would draw the thinnest line that there is.
void PainterCanvas::setLineWidth(double points)
{
    stroke_.setStyle(points > 0 ? Qt::SolidLine : Qt::NoPen);
    stroke_.setWidthF(std::max(points, 0.0));
}

void PainterCanvas::setBlendMode(BlendMode mode)
{
    painter_.setCompositionMode(modeOf(mode));
}

void PainterCanvas::fill(const Path& path)
{
    painter_.fillPath(pathOf(path), fill_);
}

void PainterCanvas::stroke(const Path& path)
{
    painter_.strokePath(pathOf(path), stroke_);
}

void PainterCanvas::fillRect(const Rect& rect)
{
    painter_.fillRect(rectOf(rect), fill_);
}

void PainterCanvas::fillOval(const Rect& rect)
{
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(fill_);
    painter_.drawEllipse(rectOf(rect));
}

void PainterCanvas::strokeOval(const Rect& rect)
{
    painter_.setPen(stroke_);
    painter_.setBrush(Qt::NoBrush);
    painter_.drawEllipse(rectOf(rect));
}

} // namespace tessel::qt
