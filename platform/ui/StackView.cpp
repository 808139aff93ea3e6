#include "platform/ui/StackView.h"

#include "platform/ui/layout/LayoutLevels.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tessel {

namespace {

constexpr double kEqualLengths = 1; ///< the priority of equal lengths for views without a length of their own

} // namespace

void StackView::addArrangedSubview(const std::shared_ptr<View>& view)
{
    addSubview(view); // which takes it out of where it was arranged
    view->setLaidOutByConstraints(true);
    arranged_.push_back(view);
    setNeedsUpdateConstraints();
    invalidateIntrinsicContentSize();
}

void StackView::removeArrangedSubview(const std::shared_ptr<View>& view)
{
    if (std::erase(arranged_, view) == 0)
        return;
    setNeedsUpdateConstraints();
    invalidateIntrinsicContentSize();
}

void StackView::willRemoveSubview(const View& view)
{
    std::erase_if(arranged_, [&](const auto& arranged) { return arranged.get() == &view; });
    setNeedsUpdateConstraints();
}

/// Measuring makes the constraints that a layout would make, and changes nothing that can be seen.
Size StackView::sizeThatFits(const Size& available) const
{
    return const_cast<StackView*>(this)->sizeFittingConstraints(available); // NOLINT
}

void StackView::updateConstraints()
{
    LayoutConstraint::deactivate(std::exchange(made_, {}));
    const auto views = shownViews();
    if (views.empty())
        return;
    if (isRow())
        arrange(views, &View::leadingAnchor, &View::trailingAnchor, &View::widthAnchor);
    else
        arrange(views, &View::topAnchor, &View::bottomAnchor, &View::heightAnchor);
    for (const auto& view : views) {
        if (isRow())
            align(*view, &View::topAnchor, &View::bottomAnchor, &View::centerYAnchor, &View::heightAnchor);
        else
            align(*view, &View::leadingAnchor, &View::trailingAnchor, &View::centerXAnchor, &View::widthAnchor);
    }
    if (isRow() && alignment_ == Alignment::FirstBaseline)
        for (std::size_t index = 1; index < views.size(); ++index)
            add(views[index]->firstBaselineAnchor().equalTo(views.front()->firstBaselineAnchor()),
                LayoutLevel::kAlignment);
    if (isRow() && alignment_ == Alignment::LastBaseline)
        for (std::size_t index = 1; index < views.size(); ++index)
            add(views[index]->lastBaselineAnchor().equalTo(views.front()->lastBaselineAnchor()),
                LayoutLevel::kAlignment);
    add((isRow() ? heightAnchor() : widthAnchor()).equalTo(0), LayoutPriority::kFitting);
}

StackView::Views StackView::shownViews() const
{
    Views views;
    std::ranges::copy_if(arranged_, std::back_inserter(views), [](const auto& view) { return !view->hidden(); });
    return views;
}

template <typename Begin, typename End, typename Length>
void StackView::arrange(const Views& views, Begin begin, End end, Length length)
{
    const auto hasLength = [&](const View& view) {
        const auto content = view.intrinsicContentSize();
        return (isRow() ? content.width : content.height) >= 0;
    };
    add(((*views.front()).*begin)().equalTo((this->*begin)()));
    View* flexible = nullptr;
    for (std::size_t index = 0; index < views.size(); ++index) {
        auto& view = *views[index];
        if (index > 0)
            add((view.*begin)().equalTo(((*views[index - 1]).*end)(), spacing_));
        if (distribution_ == Distribution::FillEqually && index > 0)
            add((view.*length)().equalTo(((*views.front()).*length)()));
        if (distribution_ == Distribution::FillEqually || hasLength(view))
            continue;
        if (auto* const other = std::exchange(flexible, &view))
            add((view.*length)().equalTo((other->*length)()), kEqualLengths);
    }
    add((*views.back().*end)().equalTo((this->*end)()));
}

template <typename Begin, typename End, typename Middle, typename Breadth>
void StackView::align(View& view, Begin begin, End end, Middle middle, Breadth breadth)
{
    const auto add = [this](const auto& constraint) { this->add(constraint, LayoutLevel::kAlignment); };
    const auto beginnings = [&] { return (view.*begin)().equalTo((this->*begin)()); };
    const auto ends = [&] { return (view.*end)().equalTo((this->*end)()); };
    switch (alignment_) {
    case Alignment::Fill:
        add(beginnings());
        return add(ends());
    case Alignment::Leading:
        add(beginnings());
        return add((view.*end)().atMost((this->*end)()));
    case Alignment::Trailing:
        add(ends());
        return add((view.*begin)().atLeast((this->*begin)()));
    case Alignment::Center:
        add((view.*middle)().equalTo((this->*middle)()));
        return add((view.*breadth)().atMost((this->*breadth)()));
    case Alignment::FirstBaseline:
    case Alignment::LastBaseline:
        add((view.*begin)().atLeast((this->*begin)()));
        return add((view.*end)().atMost((this->*end)()));
    }
}

void StackView::add(const std::shared_ptr<LayoutConstraint>& constraint, double priority)
{
    constraint->setPriority(priority);
    made_.push_back(constraint);
    constraint->setActive(true);
}

} // namespace tessel
