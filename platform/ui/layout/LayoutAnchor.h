#pragma once

#include "platform/ui/layout/LinearSolver.h"

#include <cstdint>
#include <memory>

namespace tessel {

class LayoutConstraint;
class View;

enum class LayoutAxis : std::uint8_t { Horizontal, Vertical };

/// An edge, a middle or a side of a view. Leading and trailing are where the user's writing begins and ends a line.
enum class LayoutAttribute : std::uint8_t {
    Leading,
    Trailing,
    Left,
    Right,
    CenterX,
    Top,
    Bottom,
    CenterY,
    FirstBaseline,
    LastBaseline,
    Width,
    Height
};

/// What a constraint of a view is made of. The constraints made here are not active yet.
class AnyLayoutAnchor {
public:
    AnyLayoutAnchor(View& view, LayoutAttribute attribute) : view_(&view), attribute_(attribute) {}

    [[nodiscard]] View& view() const { return *view_; }
    [[nodiscard]] LayoutAttribute attribute() const { return attribute_; }

protected:
    [[nodiscard]] std::shared_ptr<LayoutConstraint> related(LayoutRelation, const AnyLayoutAnchor* other,
                                                            double constant, double multiplier) const;

private:
    View* view_;
    LayoutAttribute attribute_;
};

enum class LayoutAnchorKind : std::uint8_t { Horizontal, Vertical, Side };

/// An anchor that can be related to those of its kind.
template <LayoutAnchorKind kind>
class LayoutAnchor : public AnyLayoutAnchor {
public:
    using AnyLayoutAnchor::AnyLayoutAnchor;
    using Constraint = std::shared_ptr<LayoutConstraint>;

    /// This anchor is equal to the other times the multiplier plus the constant, in points.
    [[nodiscard]] Constraint equalTo(const LayoutAnchor& other, double constant = 0, double multiplier = 1) const
    {
        return related(LayoutRelation::Equal, &other, constant, multiplier);
    }
    [[nodiscard]] Constraint atMost(const LayoutAnchor& other, double constant = 0, double multiplier = 1) const
    {
        return related(LayoutRelation::AtMost, &other, constant, multiplier);
    }
    [[nodiscard]] Constraint atLeast(const LayoutAnchor& other, double constant = 0, double multiplier = 1) const
    {
        return related(LayoutRelation::AtLeast, &other, constant, multiplier);
    }
    [[nodiscard]] Constraint equalTo(double points) const requires(kind == LayoutAnchorKind::Side)
    {
        return related(LayoutRelation::Equal, nullptr, points, 0);
    }
    [[nodiscard]] Constraint atMost(double points) const requires(kind == LayoutAnchorKind::Side)
    {
        return related(LayoutRelation::AtMost, nullptr, points, 0);
    }
    [[nodiscard]] Constraint atLeast(double points) const requires(kind == LayoutAnchorKind::Side)
    {
        return related(LayoutRelation::AtLeast, nullptr, points, 0);
    }
};

using LayoutXAnchor = LayoutAnchor<LayoutAnchorKind::Horizontal>;
using LayoutYAnchor = LayoutAnchor<LayoutAnchorKind::Vertical>;
using LayoutSideAnchor = LayoutAnchor<LayoutAnchorKind::Side>;

} // namespace tessel
