#include "platform/ui/View.h"

#include "platform/base/Platform.h"
#include "platform/ui/Animation.h"
#include "platform/ui/Device.h"
#include "platform/ui/layout/ViewLayout.h"

#include <algorithm>
#include <utility>

namespace tessel {

View::~View()
{
    for (const auto& subview : subviews_)
        subview->superview_ = nullptr;
    if (!layout_)
        return;
    layout_->view = nullptr;
    layout_->engine.reset();
    for (const auto& constraint : std::exchange(layout_->held, {}))
        constraint->holder_.reset();
}

std::shared_ptr<View> View::superview() const
{
    return superview_ ? superview_->weak_from_this().lock() : nullptr;
}

void View::addSubview(std::shared_ptr<View> subview)
{
    subview->removeFromSuperview();
    LayoutEngine::drop(*subview);
    subview->superview_ = this;
    subviews_.push_back(std::move(subview));
    LayoutEngine::drop(*this);
    tellChanged(ViewChange::Subviews);
    setNeedsLayout();
}

void View::removeFromSuperview()
{
    if (!superview_)
        return;
    for (auto* ancestor = superview_; ancestor; ancestor = ancestor->superview_)
        ancestor->endConstraintsWith(*this);
    LayoutEngine::drop(*this);
    auto* const superview = std::exchange(superview_, nullptr);
    superview->willRemoveSubview(*this);
    const auto self = shared_from_this();
    std::erase(superview->subviews_, self);
    superview->tellChanged(ViewChange::Subviews);
    superview->invalidateIntrinsicContentSize();
    superview->setNeedsLayout();
}

bool View::isDescendantOf(const View& other) const
{
    const View* view = this;
    while (view && view != &other)
        view = view->superview_;
    return view != nullptr;
}

void View::setFrame(const Rect& frame)
{
    const bool resized = frame.width != frame_.width || frame.height != frame_.height;
    if (!assign(frame_, frame))
        return;
    if (auto* const engine = superview_ && laidOutByConstraints() ? nullptr : LayoutEngine::existing(*this))
        engine->frameChanged(*this);
    if (resized)
        setNeedsLayout();
}

Rect View::frameIn(const View& other) const
{
    auto frame = frame_;
    for (const auto* view = superview_; view && view != &other; view = view->superview_) {
        frame.x += view->frame_.x;
        frame.y += view->frame_.y;
    }
    return frame;
}

Size View::sizeThatFits(const Size&) const
{
    const auto content = intrinsicContentSize();
    return {content.width < 0 ? frame_.width : content.width, content.height < 0 ? frame_.height : content.height};
}

void View::sizeToFit()
{
    const auto size = sizeThatFits({frame_.width, frame_.height});
    setFrame({frame_.x, frame_.y, size.width, size.height});
}

/// Whoever is to be laid out itself has told already, or is not on screen yet; it lays out what is below it too.
void View::setNeedsLayout()
{
    if (std::exchange(needsLayout_, true))
        return;
    for (auto* view = superview_; view; view = view->superview_)
        if (view->needsLayout_)
            return;
    platform::installed().device.tellScreenChanged();
}

void View::setHidden(bool hidden)
{
    if (!assign(hidden_, hidden))
        return;
    if (superview_)
        superview_->setNeedsUpdateConstraints();
    invalidateIntrinsicContentSize();
}

void View::setBackgroundColor(const Color& color)
{
    assign(backgroundColor_, color);
}

void View::setBorder(const Border& border)
{
    assign(border_, border);
}

void View::setAccessibilityLabel(std::string label)
{
    assign(accessibilityLabel_, std::move(label));
}

void View::tap()
{
    const auto self = shared_from_this();
    const auto* view = this;
    while (view && !view->tapped)
        view = view->superview_;
    if (view)
        std::function(view->tapped)();
}

void View::animate(const Animation& animation, const std::function<void()>& changes)
{
    const auto self = shared_from_this();
    auto& current = platform::installed().device.animation;
    const auto outer = std::exchange(current, animation);
    changes();
    if (animation.options & Animation::kLayoutSubviews)
        layoutIfNeeded();
    current = outer;
}

void View::invalidateIntrinsicContentSize()
{
    if (auto* const engine = LayoutEngine::existing(*this))
        engine->contentChanged(*this);
    if (!superview_)
        return;
    superview_->invalidateIntrinsicContentSize();
    superview_->setNeedsLayout();
}

void View::tellChanged(ViewChange change) const
{
    if (changed)
        changed(change);
}

} // namespace tessel
