#include "platform/ui/layout/LayoutEngine.h"

#include "platform/base/Platform.h"
#include "platform/ui/Device.h"
#include "platform/ui/View.h"
#include "platform/ui/layout/LayoutLevels.h"
#include "platform/ui/layout/ViewLayout.h"

#include <algorithm>
#include <cmath>

namespace tessel {

namespace {

std::size_t indexOf(LayoutAxis axis)
{
    return static_cast<std::size_t>(axis);
}

double component(const Size& size, LayoutAxis axis)
{
    return axis == LayoutAxis::Horizontal ? size.width : size.height;
}

std::array<double, 4> componentsOf(const Rect& frame)
{
    return {frame.x, frame.y, frame.width, frame.height};
}

bool isRequiredEquation(const LayoutConstraint& constraint)
{
    return constraint.relation() == LayoutRelation::Equal && constraint.priority() >= LayoutPriority::kRequired;
}

bool mentionsBaselineOf(const View& view, const LayoutConstraint::Side& side)
{
    return side.layout && side.layout->view == &view &&
           (side.attribute == LayoutAttribute::FirstBaseline || side.attribute == LayoutAttribute::LastBaseline);
}

} // namespace

LayoutEngine::LayoutEngine(View& root, std::optional<Size> available) : root_(root), available_(available)
{
    build();
}

LayoutEngine& LayoutEngine::of(View& view)
{
    auto& root = view.uppermost();
    auto& engine = root.layout()->engine;
    if (!engine)
        engine = std::make_unique<LayoutEngine>(root);
    return *engine;
}

LayoutEngine* LayoutEngine::existing(View& view)
{
    const auto& layout = view.uppermost().layout_;
    if (!layout || !layout->engine)
        return nullptr;
    layout->isStale = true;
    return layout->engine.get();
}

void LayoutEngine::drop(View& view)
{
    const auto& layout = view.uppermost().layout_;
    if (!layout)
        return;
    layout->isStale = true;
    layout->engine.reset();
}

void LayoutEngine::add(const std::shared_ptr<LayoutConstraint>& constraint)
{
    if (!isReadyForChange())
        return;
    addEntry(constraint);
    finishBoxes();
    enter(entries_.back());
}

void LayoutEngine::remove(const LayoutConstraint& constraint)
{
    if (!isReadyForChange())
        return;
    const auto* const entry = find(constraint);
    if (!entry)
        return;
    if (entry->solved)
        solver_.remove(*entry->solved);
    entries_.erase(entries_.begin() + (entry - entries_.data()));
}

void LayoutEngine::constantChanged(const LayoutConstraint& constraint)
{
    isSolved_ = false;
    if (const auto* const entry = find(constraint); entry && entry->solved)
        solver_.setConstant(*entry->solved, constantOf(constraint));
}

void LayoutEngine::frameChanged(const View& view)
{
    const auto* const box = find(view);
    if (!box || !isPlacedByProgram(*box))
        return;
    isSolved_ = false;
    const auto frame = componentsOf(view.frame());
    for (std::size_t index = isRoot(*box) ? 2 : 0; index < frame.size(); ++index)
        solver_.setConstant(box->frame[index], frame[index]);
}

void LayoutEngine::contentChanged(View& view)
{
    auto* const box = find(view);
    if (!box || isPlacedByProgram(*box))
        return;
    for (const auto axis : {LayoutAxis::Horizontal, LayoutAxis::Vertical}) {
        auto& content = box->content[indexOf(axis)];
        const auto size = contentSize(*box, axis);
        if ((size < 0) != (content.size < 0))
            return contentAsksAnew(view);
        setContentSize(content, size);
    }
    for (const auto& entry : entries_)
        if (mentionsBaselineOf(view, entry.constraint->first()) || mentionsBaselineOf(view, entry.constraint->second()))
            constantChanged(*entry.constraint);
}

void LayoutEngine::contentAsksAnew(View& view)
{
    auto* const box = isReadyForChange() ? find(view) : nullptr;
    if (!box || isPlacedByProgram(*box))
        return;
    for (const auto axis : {LayoutAxis::Horizontal, LayoutAxis::Vertical}) {
        removeContent(box->content[indexOf(axis)]);
        addContent(*box, axis);
    }
}

/// A root that is only measured has no frame yet.
bool LayoutEngine::isPlacedByProgram(const Box& box) const
{
    return isRoot(box) ? !available_ : !box.view->laidOutByConstraints();
}

LayoutEngine::Box* LayoutEngine::find(const View& view)
{
    const auto number = boxNumbers_.find(&view);
    return number == boxNumbers_.end() ? nullptr : &boxes_[number->second];
}

LayoutEngine::Entry* LayoutEngine::find(const LayoutConstraint& constraint)
{
    const auto entry = std::ranges::find_if(entries_, [&](auto& one) { return one.constraint.get() == &constraint; });
    return entry == entries_.end() ? nullptr : &*entry;
}

std::size_t LayoutEngine::boxOf(View& view)
{
    if (const auto number = boxNumbers_.find(&view); number != boxNumbers_.end())
        return number->second;
    const auto parent = &view == &root_ ? 0 : boxOf(*view.superview_);
    Box box{&view, parent, {}, {}, {}, {}};
    for (auto& variable : box.variables)
        variable = solver_.addVariable();
    boxes_.push_back(box);
    boxNumbers_[&view] = boxes_.size() - 1;
    return boxes_.size() - 1;
}

/// Frames are facts, and come first; then the equations that are required, which only make the problem smaller.
void LayoutEngine::build()
{
    const auto& device = platform::installed().device;
    isRightToLeft_ = device.layoutDirection == LayoutDirection::RightToLeft;
    scale_ = device.screenScale;
    isSolved_ = false;
    hasLeftOut_ = false;
    solver_ = {};
    boxes_.clear();
    boxNumbers_.clear();
    entries_.clear();
    finishedBoxes_ = 0;
    boxOf(root_);
    collect(root_);
    std::ranges::sort(entries_, {}, [](const Entry& entry) { return entry.constraint->order_; });
    for (auto& box : boxes_)
        if (isPlacedByProgram(box))
            addFrame(box);
    for (auto& entry : entries_)
        if (isRequiredEquation(*entry.constraint))
            enter(entry);
    for (auto& box : boxes_)
        addContents(box);
    finishedBoxes_ = boxes_.size();
    for (auto& entry : entries_)
        if (!isRequiredEquation(*entry.constraint))
            enter(entry);
}

void LayoutEngine::collect(View& view)
{
    if (view.laidOutByConstraints())
        boxOf(view);
    if (view.layout_)
        for (const auto& constraint : view.layout_->held)
            addEntry(constraint);
    for (const auto& subview : view.subviews())
        collect(*subview);
}

void LayoutEngine::addEntry(const std::shared_ptr<LayoutConstraint>& constraint)
{
    boxOf(*constraint->first().layout->view);
    if (const auto& second = constraint->second().layout)
        boxOf(*second->view);
    entries_.push_back({constraint, std::nullopt});
}

/// Of views that constraints speak of for the first time.
void LayoutEngine::finishBoxes()
{
    for (; finishedBoxes_ < boxes_.size(); ++finishedBoxes_) {
        auto& box = boxes_[finishedBoxes_];
        if (isPlacedByProgram(box))
            addFrame(box);
        addContents(box);
    }
}

void LayoutEngine::addContents(Box& box)
{
    if (isPlacedByProgram(box))
        return;
    if (isRoot(box))
        addFitting(box);
    addContent(box, LayoutAxis::Horizontal);
    addContent(box, LayoutAxis::Vertical);
}

void LayoutEngine::addFrame(Box& box)
{
    const auto frame = componentsOf(box.view->frame());
    for (std::size_t index = isRoot(box) ? 2 : 0; index < frame.size(); ++index) {
        appendTerm(box, index, 1);
        if (index < 2)
            appendTerm(boxes_[box.parent], index, -1);
        box.frame[index] = *add(LayoutRelation::Equal, frame[index], LayoutPriority::kRequired);
    }
}

/// As small as its contents let it be.
void LayoutEngine::addFitting(const Box& box)
{
    for (const auto axis : {LayoutAxis::Horizontal, LayoutAxis::Vertical}) {
        appendTerm(box, 2 + indexOf(axis), 1);
        [[maybe_unused]] const auto least = add(LayoutRelation::Equal, 0, LayoutPriority::kFitting);
        if (component(*available_, axis) <= 0)
            continue;
        appendTerm(box, 2 + indexOf(axis), 1);
        [[maybe_unused]] const auto most =
            add(LayoutRelation::AtMost, component(*available_, axis), LayoutPriority::kRequired);
    }
}

void LayoutEngine::addContent(Box& box, LayoutAxis axis)
{
    auto& content = box.content[indexOf(axis)];
    content.size = contentSize(box, axis);
    if (content.size < 0)
        return;
    const auto hugging = std::min(box.view->contentHugging(axis), LayoutLevel::kContent);
    const auto resistance = std::min(box.view->compressionResistance(axis), LayoutLevel::kContent);
    const auto add = [&](LayoutRelation relation, double priority) {
        appendTerm(box, 2 + indexOf(axis), 1);
        return this->add(relation, content.size, priority, weight(*box.view));
    };
    if (hugging == resistance && hugging > 0)
        content.most = add(LayoutRelation::Equal, hugging);
    if (hugging != resistance && hugging > 0)
        content.most = add(LayoutRelation::AtMost, hugging);
    if (hugging != resistance && resistance > 0)
        content.least = add(LayoutRelation::AtLeast, resistance);
}

void LayoutEngine::removeContent(Content& content)
{
    for (const auto& constraint : {content.most, content.least})
        if (constraint)
            solver_.remove(*constraint);
    content = {};
}

/// The height of text that has more than one line is that in the width that it has now.
double LayoutEngine::contentSize(const Box& box, LayoutAxis axis) const
{
    auto size = component(box.view->intrinsicContentSize(), axis);
    if (axis == LayoutAxis::Vertical && box.view->heightFollowsWidth() && box.content[0].size >= 0)
        size = box.view->sizeThatFits({value(box, 2), 0}).height;
    return size < 0 ? -1 : std::ceil(size * scale_ - LayoutLevel::kRounding) / scale_;
}

/// Of contents that matter as much, those of later views give way.
double LayoutEngine::weight(const View& view) const
{
    constexpr double kStep = 1e-3;
    if (&view == &root_)
        return 1;
    const auto& siblings = view.superview_->subviews();
    const auto place = std::ranges::find_if(siblings, [&](const auto& one) { return one.get() == &view; });
    return 1 + kStep * static_cast<double>(siblings.end() - place);
}

} // namespace tessel
