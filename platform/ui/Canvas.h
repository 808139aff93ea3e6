#pragma once

#include "platform/ui/Geometry.h"

#include <vector>

namespace tessel {

/// How a colour is put over what is there: the separable and non-separable blend modes of the W3C's Compositing and
/// Blending Level 1, and the operators of Porter and Duff (1984) that this program draws with.
enum class BlendMode { Normal, Copy, Multiply, Screen, Overlay, Darken, Lighten, SourceAtop, DestinationOut };

/// An outline of lines and arcs, in points.
class Path {
public:
    enum class Verb { Move, Line, Arc, Close };
    struct Element {
        Verb verb = Verb::Move;
        Point point;           ///< where to, or the arc's centre
        double radius = 0;     ///< of an arc
        double startAngle = 0; ///< radians, clockwise from three o'clock
        double endAngle = 0;

        friend bool operator==(const Element&, const Element&) = default;
    };

    void moveTo(const Point&);
    void lineTo(const Point&);
    /// Clockwise from one angle to the other, after a line to where it begins.
    void addArc(const Point& center, double radius, double startAngle, double endAngle);
    void close();

    [[nodiscard]] const std::vector<Element>& elements() const { return elements_; }

    friend bool operator==(const Path&, const Path&) = default;

private:
    std::vector<Element> elements_;
};

/// What a view draws itself on. Coordinates are the view's own; nothing is kept between two drawings.
class Canvas {
public:
    virtual ~Canvas() = default;

    virtual void setFillColor(const Color&) = 0;
    virtual void setStrokeColor(const Color&) = 0;
    virtual void setLineWidth(double points) = 0;
    virtual void setBlendMode(BlendMode) = 0;

    virtual void fill(const Path&) = 0;
    virtual void stroke(const Path&) = 0;
    virtual void fillRect(const Rect&) = 0;
    virtual void fillOval(const Rect&) = 0;
    virtual void strokeOval(const Rect&) = 0;
};

} // namespace tessel
