#pragma once

#include "platform/ui/Geometry.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tessel {

class Canvas;

/// What a shell must look at again.
enum class ViewChange {
    Properties, ///< the frame, colours, texts and states of the view itself
    Subviews,   ///< which subviews it has, or their order
    Drawing,    ///< what it draws itself
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

    /// The size that the content takes by itself; a component below 0 means that there is none.
    [[nodiscard]] virtual Size intrinsicContentSize() const { return {-1, -1}; }
    /// The size that fits the content into a width and height.
    [[nodiscard]] virtual Size sizeThatFits(const Size& available) const;
    /// Takes the size that fits, keeping the origin.
    void sizeToFit();

    /// Has `layoutSubviews` run before the view is next shown.
    void setNeedsLayout();
    /// Lays out this view and those below it, as far as they need it.
    void layoutIfNeeded();

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

    /// Told after each change, by the shell's wish; it must not change the view.
    std::function<void(ViewChange)> changed;

protected:
    /// Places the subviews in `bounds`.
    virtual void layoutSubviews() {}
    virtual void willRemoveSubview(const View&) {}
    /// The content has another size of its own: all that it lies in may have to lay out anew.
    void invalidateIntrinsicContentSize();
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
    friend class ViewController;

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
};

} // namespace tessel
