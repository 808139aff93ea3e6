#include "platform/ui/layout/LayoutConstraint.h"

#include "platform/base/Platform.h"
#include "platform/log/UnifiedLog.h"
#include "platform/ui/View.h"
#include "platform/ui/layout/ViewLayout.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace tessel {

namespace {

constexpr std::array kNames{"leading", "trailing", "left",          "right",        "centerX", "top",
                            "bottom",  "centerY",  "firstBaseline", "lastBaseline", "width",   "height"};
constexpr std::array kSigns{" = ", " <= ", " >= "};

std::string text(double number)
{
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%g", number);
    return buffer;
}

std::string nameOf(const LayoutConstraint::Side& side)
{
    const auto* const view = side.layout->view;
    const auto name = !view ? "a view that is gone" : view->layoutIdentifier.empty() ? "view" : view->layoutIdentifier;
    return name + "." + kNames[static_cast<std::size_t>(side.attribute)];
}

View* viewOf(const LayoutConstraint::Side& side)
{
    return side.layout ? side.layout->view : nullptr;
}

} // namespace

std::shared_ptr<LayoutConstraint> AnyLayoutAnchor::related(LayoutRelation relation, const AnyLayoutAnchor* other,
                                                           double constant, double multiplier) const
{
    LayoutConstraint::Side second;
    if (other)
        second = {other->view().layout(), other->attribute()};
    return std::make_shared<LayoutConstraint>(LayoutConstraint::Side{view().layout(), attribute()}, relation,
                                              std::move(second), multiplier, constant);
}

LayoutConstraint::LayoutConstraint(Side first, LayoutRelation relation, Side second, double multiplier, double constant)
    : first_(std::move(first)), second_(std::move(second)), relation_(relation), multiplier_(multiplier),
      constant_(constant)
{
}

void LayoutConstraint::setConstant(double points)
{
    if (std::exchange(constant_, points) == points)
        return;
    auto* const view = holder();
    if (!view)
        return;
    if (auto* const engine = LayoutEngine::existing(*view))
        engine->constantChanged(*this);
    view->setNeedsLayout();
}

void LayoutConstraint::setPriority(double priority)
{
    if (std::exchange(priority_, priority) == priority || !isActive())
        return;
    setActive(false);
    setActive(true);
}

void LayoutConstraint::setActive(bool active)
{
    if (active == isActive())
        return;
    if (active)
        addToHolder();
    else
        takeFromHolder();
}

void LayoutConstraint::activate(const List& constraints)
{
    for (const auto& constraint : constraints)
        constraint->setActive(true);
}

void LayoutConstraint::deactivate(const List& constraints)
{
    for (const auto& constraint : constraints)
        constraint->setActive(false);
}

std::string LayoutConstraint::description() const
{
    auto described = nameOf(first_) + kSigns[static_cast<std::size_t>(relation_)];
    if (!second_.layout)
        return described + text(constant_);
    if (multiplier_ != 1)
        described += text(multiplier_) + " * ";
    described += nameOf(second_);
    if (constant_ != 0)
        described += (constant_ < 0 ? " - " : " + ") + text(std::abs(constant_));
    return described;
}

View* LayoutConstraint::commonAncestor() const
{
    auto* const first = viewOf(first_);
    auto* const second = second_.layout ? viewOf(second_) : first;
    if (!first || !second)
        return nullptr;
    auto* ancestor = first;
    while (ancestor && !second->isDescendantOf(*ancestor))
        ancestor = ancestor->superview_;
    return ancestor;
}

View* LayoutConstraint::holder() const
{
    const auto layout = holder_.lock();
    return layout ? layout->view : nullptr;
}

void LayoutConstraint::addToHolder()
{
    auto* const view = commonAncestor();
    if (!view) {
        platform::installed().log.write(LogLevel::Error, "No view holds both views of a constraint: %{public}@",
                                        description());
        return;
    }
    static std::uint64_t activations = 0;
    order_ = ++activations;
    holder_ = view->layout();
    view->layout()->held.push_back(shared_from_this());
    if (auto* const engine = LayoutEngine::existing(*view))
        engine->add(shared_from_this());
    view->setNeedsLayout();
}

void LayoutConstraint::takeFromHolder()
{
    const auto self = shared_from_this();
    const auto layout = std::exchange(holder_, {}).lock();
    std::erase(layout->held, self);
    if (!layout->view)
        return;
    if (auto* const engine = LayoutEngine::existing(*layout->view))
        engine->remove(*this);
    layout->view->setNeedsLayout();
}

std::shared_ptr<LayoutConstraint> withPriority(double priority, std::shared_ptr<LayoutConstraint> constraint)
{
    constraint->setPriority(priority);
    return constraint;
}

} // namespace tessel
