#include "platform/base/Platform.h"
#include "platform/log/UnifiedLog.h"
#include "platform/ui/Device.h"
#include "platform/ui/View.h"
#include "platform/ui/layout/LayoutEngine.h"
#include "platform/ui/layout/LayoutLevels.h"
#include "platform/ui/layout/ViewLayout.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tessel {

namespace {

constexpr int kMostRounds = 8; ///< of texts that change their heights with their widths, and so on
constexpr double kGrid = 1024; ///< solutions are rounded to this part of a point, so that equal ones are equal

enum BoxVariable : std::size_t { kX, kY, kWidth, kHeight };

} // namespace

Rect LayoutEngine::frameOf(const View& view)
{
    solve();
    const auto* const box = find(view);
    if (!box)
        return view.frame();
    const auto& parent = boxes_[box->parent];
    const auto left = toPixel(value(*box, kX));
    const auto top = toPixel(value(*box, kY));
    return {left - toPixel(value(parent, kX)), top - toPixel(value(parent, kY)),
            std::max(0.0, toPixel(value(*box, kX) + value(*box, kWidth)) - left),
            std::max(0.0, toPixel(value(*box, kY) + value(*box, kHeight)) - top)};
}

Size LayoutEngine::size()
{
    solve();
    return {toPixel(value(boxes_.front(), kWidth)), toPixel(value(boxes_.front(), kHeight))};
}

void LayoutEngine::enter(Entry& entry)
{
    const auto& constraint = *entry.constraint;
    if (constraint.priority() <= 0)
        return;
    appendTerms(constraint.first(), 1);
    if (constraint.second().layout)
        appendTerms(constraint.second(), -constraint.multiplier());
    entry.solved = add(constraint.relation(), constantOf(constraint), constraint.priority());
    hasLeftOut_ = hasLeftOut_ || !entry.solved;
}

/// What was changed since may have made room for them.
void LayoutEngine::retryLeftOut()
{
    if (!std::exchange(hasLeftOut_, false))
        return;
    for (auto& entry : entries_)
        if (!entry.solved)
            enter(entry);
}

/// Of those that are left out once all changes have been made: what they contradicted may have been on its way out.
void LayoutEngine::reportLeftOut() const
{
    for (const auto& entry : entries_)
        if (!entry.solved)
            report(*entry.constraint);
}

void LayoutEngine::report(LayoutConstraint& constraint)
{
    if (!std::exchange(constraint.wasReported_, true))
        platform::installed().log.write(
            LogLevel::Error, "A constraint contradicts others that are required, and is left out: %{public}@",
            constraint.description());
}

void LayoutEngine::appendTerms(const LayoutConstraint::Side& side, double factor)
{
    const auto& box = *find(*side.layout->view);
    const auto append = [&](std::size_t variable, double part) { appendTerm(box, variable, factor * part); };
    const auto appendFromRight = [&](double widths) {
        appendTerm(boxes_.front(), kWidth, factor);
        append(kX, -1);
        append(kWidth, -widths);
    };
    switch (side.attribute) {
    case LayoutAttribute::Left:
        return isRightToLeft_ ? appendFromRight(1) : append(kX, 1);
    case LayoutAttribute::Right:
        if (isRightToLeft_)
            return appendFromRight(0);
        [[fallthrough]];
    case LayoutAttribute::Trailing:
        append(kWidth, 1);
        [[fallthrough]];
    case LayoutAttribute::Leading:
        return append(kX, 1);
    case LayoutAttribute::CenterX:
        append(kX, 1);
        return append(kWidth, 0.5);
    case LayoutAttribute::Bottom:
    case LayoutAttribute::LastBaseline:
        append(kHeight, 1);
        [[fallthrough]];
    case LayoutAttribute::Top:
    case LayoutAttribute::FirstBaseline:
        return append(kY, 1);
    case LayoutAttribute::CenterY:
        append(kY, 1);
        return append(kHeight, 0.5);
    case LayoutAttribute::Width:
        return append(kWidth, 1);
    case LayoutAttribute::Height:
        return append(kHeight, 1);
    }
}

void LayoutEngine::appendTerm(const Box& box, std::size_t variable, double factor)
{
    if (isRoot(box) && variable < kWidth)
        return;
    terms_.push_back({box.variables[variable], factor});
}

/// Without what the baselines are away from the edges by which they are known.
double LayoutEngine::constantOf(const LayoutConstraint& constraint) const
{
    const auto offset = [](const LayoutConstraint::Side& side) {
        if (side.layout && side.attribute == LayoutAttribute::FirstBaseline)
            return side.layout->view->baselines().first;
        if (side.layout && side.attribute == LayoutAttribute::LastBaseline)
            return -side.layout->view->baselines().last;
        return 0.0;
    };
    return constraint.constant() - offset(constraint.first()) + constraint.multiplier() * offset(constraint.second());
}

std::optional<LinearSolver::Constraint> LayoutEngine::add(LayoutRelation relation, double constant, double priority,
                                                          double weight)
{
    isSolved_ = false;
    const auto added = solver_.add(terms_, relation, constant, priority, weight);
    terms_.clear();
    return added;
}

/// Changed constants are followed first; where they cannot be, all is made anew from the views, which have changed
/// already.
bool LayoutEngine::isReadyForChange()
{
    isSolved_ = false;
    if (solver_.solve())
        return true;
    build();
    return false;
}

void LayoutEngine::solve()
{
    const auto& device = platform::installed().device;
    if (isRightToLeft_ != (device.layoutDirection == LayoutDirection::RightToLeft) || scale_ != device.screenScale)
        build();
    for (int round = 0; !isSolved_ && round < kMostRounds; ++round) {
        if (!solver_.solve())
            build();
        retryLeftOut();
        const bool wasNegative = keepPositive();
        const bool wasWrapped = wrapTexts();
        isSolved_ = !wasNegative && !wasWrapped;
    }
    isSolved_ = solver_.solve();
    if (hasLeftOut_)
        reportLeftOut();
}

/// Only sides that would be below zero get the constraint that keeps them from it. @returns whether any did
bool LayoutEngine::keepPositive()
{
    bool wasNegative = false;
    for (auto& box : boxes_)
        for (std::size_t axis = 0; axis < 2; ++axis) {
            if (box.isKeptPositive[axis] || value(box, kWidth + axis) >= 0)
                continue;
            appendTerm(box, kWidth + axis, 1);
            box.isKeptPositive[axis] = add(LayoutRelation::AtLeast, 0, LayoutLevel::kPositive).has_value();
            wasNegative = true;
        }
    return wasNegative;
}

/// Gives texts the heights that they have in their widths. @returns whether any changed
bool LayoutEngine::wrapTexts()
{
    bool wasWrapped = false;
    for (auto& box : boxes_) {
        auto& content = box.content[1];
        if (content.size >= 0 && box.view->heightFollowsWidth())
            wasWrapped = setContentSize(content, contentSize(box, LayoutAxis::Vertical)) || wasWrapped;
    }
    return wasWrapped;
}

bool LayoutEngine::setContentSize(Content& content, double size)
{
    if (std::exchange(content.size, size) == size)
        return false;
    isSolved_ = false;
    for (const auto& constraint : {content.most, content.least})
        if (constraint)
            solver_.setConstant(*constraint, size);
    return true;
}

double LayoutEngine::value(const Box& box, std::size_t variable) const
{
    return isRoot(box) && variable < kWidth ? 0 : std::round(solver_.value(box.variables[variable]) * kGrid) / kGrid;
}

double LayoutEngine::toPixel(double points) const
{
    return std::floor(points * scale_ + 0.5) / scale_;
}

} // namespace tessel
