#include "platform/ui/View.h"

#include "platform/base/Platform.h"
#include "platform/ui/Device.h"

#include <algorithm>
#include <utility>

namespace tessel {

View::~View()
{
    for (const auto& subview : subviews_)
        subview->superview_ = nullptr;
}

std::shared_ptr<View> View::superview() const
{
    return superview_ ? superview_->weak_from_this().lock() : nullptr;
}

void View::addSubview(std::shared_ptr<View> subview)
{
    subview->removeFromSuperview();
    subview->superview_ = this;
    subviews_.push_back(std::move(subview));
    tellChanged(ViewChange::Subviews);
    setNeedsLayout();
}

void View::removeFromSuperview()
{
    auto* const superview = std::exchange(superview_, nullptr);
    if (!superview)
        return;
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
    if (assign(frame_, frame) && resized)
        setNeedsLayout();
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

void View::layoutIfNeeded()
{
    const auto self = shared_from_this();
    if (needsLayout_ && !std::exchange(isLayingOut_, true)) {
        if (willLayoutSubviews_)
            willLayoutSubviews_();
        layoutSubviews();
        isLayingOut_ = false;
    }
    const auto subviews = subviews_; // a layout may add some and take some away
    for (const auto& subview : subviews)
        subview->layoutIfNeeded();
    needsLayout_ = false;
}

void View::setHidden(bool hidden)
{
    if (assign(hidden_, hidden))
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

void View::invalidateIntrinsicContentSize()
{
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
