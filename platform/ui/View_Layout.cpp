#include "platform/ui/View.h"
#include "platform/ui/layout/ViewLayout.h"

#include <algorithm>
#include <utility>

namespace tessel {

namespace {

/// One places all; others follow when a layout changes what constraints are about. What changes with each is left.
constexpr int kMostPasses = 4;

} // namespace

void View::layoutIfNeeded()
{
    const auto self = shared_from_this();
    const auto top = uppermost().shared_from_this();
    const auto layout = top->layout();
    if (std::exchange(layout->isInPass, true))
        return layOutTree();
    for (int pass = 0; pass < kMostPasses; ++pass) {
        layout->isStale = false;
        top->updateConstraintsIfNeeded();
        layOutTree();
        if (!layout->isStale)
            break;
    }
    layout->isInPass = false;
}

void View::layOutTree()
{
    const auto self = shared_from_this();
    if (needsLayout_ && !std::exchange(isLayingOut_, true)) {
        if (willLayoutSubviews_)
            willLayoutSubviews_();
        placeSubviews();
        layoutSubviews();
        isLayingOut_ = false;
    } else {
        placeSubviews();
    }
    const auto subviews = subviews_; // a layout may add some and take some away
    for (const auto& subview : subviews)
        subview->layoutIfNeeded();
    needsLayout_ = false;
}

/// Gives the subviews the frames that constraints say.
void View::placeSubviews()
{
    const auto subviews = subviews_;
    for (const auto& subview : subviews)
        if (subview->laidOutByConstraints())
            subview->setFrame(LayoutEngine::of(*this).frameOf(*subview));
}

void View::setNeedsUpdateConstraints()
{
    needsUpdateConstraints_ = true;
    setNeedsLayout();
}

void View::updateConstraintsIfNeeded()
{
    const auto subviews = subviews_;
    for (const auto& subview : subviews)
        subview->updateConstraintsIfNeeded();
    if (std::exchange(needsUpdateConstraints_, false))
        updateConstraints();
}

bool View::laidOutByConstraints() const
{
    return layout_ && layout_->byConstraints;
}

void View::setLaidOutByConstraints(bool byConstraints)
{
    if (std::exchange(layout()->byConstraints, byConstraints) == byConstraints)
        return;
    LayoutEngine::drop(*this);
    setNeedsLayout();
}

double View::contentHugging(LayoutAxis axis) const
{
    return layout_ ? layout_->hugging[static_cast<std::size_t>(axis)] : LayoutPriority::kLow;
}

void View::setContentHugging(LayoutAxis axis, double priority)
{
    layout()->hugging[static_cast<std::size_t>(axis)] = priority;
    if (auto* const engine = LayoutEngine::existing(*this))
        engine->contentAsksAnew(*this);
    setNeedsLayout();
}

double View::compressionResistance(LayoutAxis axis) const
{
    return layout_ ? layout_->resistance[static_cast<std::size_t>(axis)] : LayoutPriority::kHigh;
}

void View::setCompressionResistance(LayoutAxis axis, double priority)
{
    layout()->resistance[static_cast<std::size_t>(axis)] = priority;
    if (auto* const engine = LayoutEngine::existing(*this))
        engine->contentAsksAnew(*this);
    setNeedsLayout();
}

Size View::sizeFittingConstraints(const Size& available)
{
    updateConstraintsIfNeeded();
    return LayoutEngine(*this, available).size();
}

const std::shared_ptr<ViewLayout>& View::layout()
{
    if (!layout_) {
        layout_ = std::make_shared<ViewLayout>();
        layout_->view = this;
    }
    return layout_;
}

View& View::uppermost()
{
    auto* view = this;
    while (view->superview_)
        view = view->superview_;
    return *view;
}

/// Ends those that are held here and are about a view that leaves, or about one in it.
void View::endConstraintsWith(const View& leaving)
{
    if (!layout_)
        return;
    const auto isAbout = [&](const LayoutConstraint::Side& side) {
        return side.layout && side.layout->view && side.layout->view->isDescendantOf(leaving);
    };
    for (const auto& constraint : LayoutConstraint::List(layout_->held))
        if (isAbout(constraint->first()) || isAbout(constraint->second()))
            constraint->setActive(false);
}

} // namespace tessel
