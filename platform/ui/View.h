#pragma once

#include "platform/ui/Geometry.h"
#include "platform/ui/layout/LayoutAnchor.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tessel {

class Canvas;
struct Animation;
struct ViewLayout;

/// What a shell must look at again.
enum class ViewChange {
    Properties, ///< the frame, colours, texts and states of the view itself
    Subviews,   ///< which subviews it has, or their order
    Drawing,    ///< what it draws itself
};

/// Distances of the first and the last line's baseline from a view's top and bottom, in points.
struct Baselines {
    double first = 0;
    double last = 0;
};

/// A rectangle of the screen and what lies in it: what a shell draws for it, it reads from here. Held by its superview
/// or its controller; made as a shared pointer. Main thread only.
class View : public std::enable_shared_from_this<View> {
public:
    View() = default;
    explicit View(const Rect& frame) : frame_(frame) {}
    virtual ~View();
    View(const View&) = delete;
    View& operator=(const View&) = delete;

    /// Back to front, which is also their reading order.
    [[nodiscard]] const std::vector<std::shared_ptr<View>>& subviews() const { return subviews_; }
    /// Null without one, and while that is only being made.
    [[nodiscard]] std::shared_ptr<View> superview() const;
    /// Puts it on top of the others; it leaves the view that it was in.
    void addSubview(std::shared_ptr<View>);
    void removeFromSuperview();
    /// Whether this is the view, or lies in it at any depth.
    [[nodiscard]] bool isDescendantOf(const View&) const;

    /// In the superview's coordinates, whose origin is its leading top corner in either writing direction: a shell
    /// mirrors the whole.
    [[nodiscard]] const Rect& frame() const { return frame_; }
    /// Another size also has the subviews laid out again.
    void setFrame(const Rect&);
    [[nodiscard]] Rect bounds() const { return {0, 0, frame_.width, frame_.height}; }
    /// The frame in the coordinates of a view that it lies in at any depth; in a scroll view those of its content.
    [[nodiscard]] Rect frameIn(const View&) const;

    /// The size that the content takes by itself; a component below 0 means that there is none.
    [[nodiscard]] virtual Size intrinsicContentSize() const { return {-1, -1}; }
    /// The content has another size of its own: all that it lies in may have to lay out anew.
    void invalidateIntrinsicContentSize();
    /// The size that fits the content into a width and height.
    [[nodiscard]] virtual Size sizeThatFits(const Size& available) const;
    /// Takes the size that fits, keeping the origin.
    void sizeToFit();

    /// Has `layoutSubviews` run before the view is next shown.
    void setNeedsLayout();
    /// Lays out this view and those below it, as far as they need it: first `updateConstraints`, from below upwards,
    /// then downwards the frames that constraints give and `layoutSubviews`.
    void layoutIfNeeded();
    /// Has `updateConstraints` run before the next layout.
    void setNeedsUpdateConstraints();

    /// Whether constraints give the frame; else the program does, and constraints take it as it is. The uppermost view
    /// of a tree never asks them.
    [[nodiscard]] bool laidOutByConstraints() const;
    void setLaidOutByConstraints(bool);
    [[nodiscard]] LayoutXAnchor leadingAnchor() { return {*this, LayoutAttribute::Leading}; }
    [[nodiscard]] LayoutXAnchor trailingAnchor() { return {*this, LayoutAttribute::Trailing}; }
    [[nodiscard]] LayoutXAnchor leftAnchor() { return {*this, LayoutAttribute::Left}; }
    [[nodiscard]] LayoutXAnchor rightAnchor() { return {*this, LayoutAttribute::Right}; }
    [[nodiscard]] LayoutXAnchor centerXAnchor() { return {*this, LayoutAttribute::CenterX}; }
    [[nodiscard]] LayoutYAnchor topAnchor() { return {*this, LayoutAttribute::Top}; }
    [[nodiscard]] LayoutYAnchor bottomAnchor() { return {*this, LayoutAttribute::Bottom}; }
    [[nodiscard]] LayoutYAnchor centerYAnchor() { return {*this, LayoutAttribute::CenterY}; }
    [[nodiscard]] LayoutYAnchor firstBaselineAnchor() { return {*this, LayoutAttribute::FirstBaseline}; }
    [[nodiscard]] LayoutYAnchor lastBaselineAnchor() { return {*this, LayoutAttribute::LastBaseline}; }
    [[nodiscard]] LayoutSideAnchor widthAnchor() { return {*this, LayoutAttribute::Width}; }
    [[nodiscard]] LayoutSideAnchor heightAnchor() { return {*this, LayoutAttribute::Height}; }
    /// How much it matters that the view is not larger, and not smaller, than its content, as LayoutPriority counts;
    /// 0 for not at all.
    [[nodiscard]] double contentHugging(LayoutAxis) const;
    void setContentHugging(LayoutAxis, double priority);
    [[nodiscard]] double compressionResistance(LayoutAxis) const;
    void setCompressionResistance(LayoutAxis, double priority);
    /// The least size in which the constraints of the view and of those below it hold.
    /// @param available the most; a side that is not above 0 has no end
    [[nodiscard]] Size sizeFittingConstraints(const Size& available);
    /// Whether another width may give the content another height: that of `sizeThatFits`.
    [[nodiscard]] virtual bool heightFollowsWidth() const { return false; }
    /// Those of a view that is as high as its content; without text the view's edges.
    [[nodiscard]] virtual Baselines baselines() const { return {intrinsicContentSize().height, 0}; }
    /// What the log calls the view when it tells of its constraints.
    std::string layoutIdentifier;

    [[nodiscard]] bool hidden() const { return hidden_; }
    void setHidden(bool);
    [[nodiscard]] const Color& backgroundColor() const { return backgroundColor_; }
    void setBackgroundColor(const Color&);
    [[nodiscard]] const Border& border() const { return border_; }
    void setBorder(const Border&);

    /// What assistive technology calls the view, UTF-8; empty: what it shows.
    [[nodiscard]] virtual std::string accessibilityLabel() const { return accessibilityLabel_; }
    void setAccessibilityLabel(std::string);

    /// Whether `draw` draws anything; a shell gives only such views a surface of their own.
    [[nodiscard]] virtual bool drawsItself() const { return false; }
    virtual void draw(Canvas&) const {}
    /// Has the view drawn anew.
    void setNeedsDisplay() { tellChanged(ViewChange::Drawing); }

    /// What a tap on the view means, or on one in it that takes no touches itself; empty: the view takes none.
    std::function<void()> tapped;
    /// Taps the view, as the user does: the closest view that takes taps, of this one and those that it lies in.
    void tap();

    /// Makes changes that are to be seen going on, as Device::animation says meanwhile.
    void animate(const Animation&, const std::function<void()>& changes);

    /// Told after each change, by the shell's wish; it must not change the view.
    std::function<void(ViewChange)> changed;

protected:
    /// Makes the constraints fit what has changed.
    virtual void updateConstraints() {}
    /// Places the subviews in `bounds` that constraints do not place.
    virtual void layoutSubviews() {}
    virtual void willRemoveSubview(const View&) {}
    void tellChanged(ViewChange) const;
    /// Sets a property of a subclass and tells of it, if it is another value.
    template <typename T>
    bool assign(T& property, T value, ViewChange change = ViewChange::Properties)
    {
        if (property == value)
            return false;
        property = std::move(value);
        tellChanged(change);
        return true;
    }

private:
    friend class AnyLayoutAnchor;
    friend class LayoutConstraint;
    friend class LayoutEngine;
    friend class ViewController;
    friend class VisualFormatReader;

    [[nodiscard]] const std::shared_ptr<ViewLayout>& layout();
    [[nodiscard]] View& uppermost();
    void updateConstraintsIfNeeded();
    void layOutTree();
    void placeSubviews();
    void endConstraintsWith(const View& leaving);

    Rect frame_;
    std::vector<std::shared_ptr<View>> subviews_;
    View* superview_ = nullptr; // holds this; a subclass may add subviews before it is held itself
    std::function<void()> willLayoutSubviews_;
    Color backgroundColor_ = Color::clear();
    Border border_;
    std::string accessibilityLabel_;
    bool hidden_ = false;
    bool needsLayout_ = true;
    bool isLayingOut_ = false;
    bool needsUpdateConstraints_ = true;
    std::shared_ptr<ViewLayout> layout_; // made with the first need
};

} // namespace tessel
